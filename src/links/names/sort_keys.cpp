#include "links/names/sort_keys.h"

#include "links/settings.h"
#include "links/text/localization.h"
#include "links/text/trimming.h"
#include "platform/base/user_defaults.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

QStringList prefixesFrom(const QString& words) {
    QStringList prefixes;
    for (const QString& word : words.split(u' '))
        prefixes.append(trimmedString(word.toLower()) + u' ');
    return prefixes;
}

QStringList& knownPrefixes() {
    static QStringList prefixes = prefixesFrom(u"a an the"_s);
    return prefixes;
}

}  // namespace

QString sortPrefixesString(const platform::UserDefaults& defaults) {
    const bool isSet = defaults.hasValueForKey(settings::ignorableSortingPrefixes.name());
    return isSet ? defaults.get(settings::ignorableSortingPrefixes) : localized("a an the");
}

void setSortPrefixes(const QString& words) {
    knownPrefixes() = prefixesFrom(words);
}

const QStringList& sortPrefixes() {
    return knownPrefixes();
}

QString sortString(const QString& name) {
    if (name.size() < 2)
        return name;
    for (const QString& prefix : sortPrefixes()) {
        if (name.startsWith(prefix, Qt::CaseInsensitive))
            return name.mid(prefix.size());
    }
    return name;
}

}  // namespace links
