#include "engine/record/rule_matching.h"

#include <algorithm>

namespace engine {

bool hostComponentsMatch(const QStringList& pattern, const QStringList& host) {
    return !pattern.isEmpty() && pattern.size() <= host.size() &&
           std::equal(pattern.crbegin(), pattern.crend(), host.crbegin());
}

bool isHostInPatterns(const QString& host, const QStringList& patterns) {
    if (host.isEmpty())
        return false;
    const QStringList labels = host.toLower().split(u'.');
    return std::any_of(patterns.cbegin(), patterns.cend(), [&](const QString& pattern) {
        return hostComponentsMatch(pattern.toLower().split(u'.'), labels);
    });
}

bool isExtensionInList(const QString& extension, const QStringList& extensions) {
    return !extension.isEmpty() && extensions.contains(extension, Qt::CaseInsensitive);
}

}  // namespace engine
