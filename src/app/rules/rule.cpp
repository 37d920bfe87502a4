#include "app/rules/rule.h"

#include "links/text/trimming.h"
#include "platform/text/comparison.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

const auto hostsKey = u"Hosts"_s;
const auto extensionsKey = u"Extensions"_s;
const auto downloadsFolderKey = u"Downloads Folder"_s;
const auto applicationKey = u"Application"_s;

}  // namespace

QString Rule::title() const {
    QStringList parts;
    for (const QStringList& list : {hosts, extensions}) {
        if (!list.isEmpty()) {
            parts.append(list.join(u"//"_s));
        }
    }
    return parts.isEmpty() ? u"-"_s : parts.join(u"::"_s);
}

QVariantMap dictionaryFromRule(const Rule& rule) {
    // Of the types in which a stored rule is read back, so that the two are equal.
    const auto list = [](const QStringList& entries) {
        return QVariantList(entries.begin(), entries.end());
    };
    QVariantMap dictionary;
    if (!rule.hosts.isEmpty()) {
        dictionary[hostsKey] = list(rule.hosts);
    }
    if (!rule.extensions.isEmpty()) {
        dictionary[extensionsKey] = list(rule.extensions);
    }
    if (!rule.downloadsFolder.isEmpty()) {
        dictionary[downloadsFolderKey] = rule.downloadsFolder;
    }
    if (!rule.application.isEmpty()) {
        dictionary[applicationKey] = rule.application;
    }
    return dictionary;
}

Rule ruleFromDictionary(const QVariantMap& dictionary) {
    return {dictionary.value(hostsKey).toStringList(),
            dictionary.value(extensionsKey).toStringList(),
            dictionary.value(downloadsFolderKey).toString(),
            dictionary.value(applicationKey).toString()};
}

bool isRuleOrderedBefore(const Rule& a, const Rule& b) {
    const int byHost = platform::compareStringsNaturally(a.hosts.value(0), b.hosts.value(0));
    return byHost != 0 ? byHost < 0
                       : platform::compareStringsNaturally(a.extensions.value(0),
                                                           b.extensions.value(0)) < 0;
}

QStringList dotTrimmedStringValuesSeparatedByNewlines(const QString& text) {
    QString lines = text;
    for (QChar& unit : lines) {
        if (links::isNewline(unit)) {
            unit = u'\n';
        }
    }
    QStringList entries = links::stringsByTrimmingCharactersInSet(
        lines.split(u'\n'),
        [](QChar unit) { return unit == u'.' || links::isWhitespaceOrNewline(unit); });
    entries.removeAll(QString());
    return entries;
}

}  // namespace app
