#include "links/names/sort_keys.h"

#include "links/settings.h"
#include "links/text/localization.h"
#include "links/text/trimming.h"

namespace links {
namespace {

QStringList makeSortPrefixes() {
    QStringList prefixes;
    for (const QString& word : sortPrefixesString().split(u' '))
        prefixes.append(trimmedString(word.toLower()) + u' ');
    return prefixes;
}

}  // namespace

QString sortPrefixesString() {
    const auto& defaults = platform::standardDefaults();
    const bool isSet = defaults.hasValueForKey(settings::ignorableSortingPrefixes.name());
    return isSet ? defaults.get(settings::ignorableSortingPrefixes) : localized("a an the");
}

const QStringList& sortPrefixesByForcedRebuild(bool forcedRebuild) {
    static QStringList prefixes;
    if (forcedRebuild || prefixes.isEmpty())
        prefixes = makeSortPrefixes();
    return prefixes;
}

QString sortString(const QString& name) {
    if (name.size() < 2)
        return name;
    for (const QString& prefix : sortPrefixesByForcedRebuild(false)) {
        if (name.startsWith(prefix, Qt::CaseInsensitive))
            return name.mid(prefix.size());
    }
    return name;
}

}  // namespace links
