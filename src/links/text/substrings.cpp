#include "links/text/substrings.h"

#include <algorithm>

#include "platform/text/comparison.h"

namespace links {
namespace {

qsizetype indexOf(const QString& text, const QString& part, bool searchBackwards) {
    if (part.isEmpty())
        return -1;
    return searchBackwards ? text.lastIndexOf(part) : text.indexOf(part);
}

std::optional<QString> notFound(const QString& text, bool returnSelf) {
    return returnSelf ? std::optional(text) : std::nullopt;
}

}  // namespace

std::optional<QString> substringBeforeSuffix(const QString& text, const QString& suffix,
                                             bool searchBackwards, bool returnSelfIfNotFound) {
    const qsizetype index = indexOf(text, suffix, searchBackwards);
    return index < 0 ? notFound(text, returnSelfIfNotFound) : text.left(index);
}

std::optional<QString> substringBeforeSuffix(const QString& text, const QString& suffix,
                                             bool returnSelfIfNotFound) {
    return substringBeforeSuffix(text, suffix, false, returnSelfIfNotFound);
}

std::optional<QString> substringAfterPrefix(const QString& text, const QString& prefix,
                                            bool searchBackwards, bool returnSelfIfNotFound) {
    const qsizetype index = indexOf(text, prefix, searchBackwards);
    return index < 0 ? notFound(text, returnSelfIfNotFound) : text.mid(index + prefix.size());
}

std::optional<QString> substringAfterPrefix(const QString& text, const QString& prefix,
                                            bool returnSelfIfNotFound) {
    return substringAfterPrefix(text, prefix, false, returnSelfIfNotFound);
}

bool isMatchForSearchStrings(const QString& text, const QStringList& searchStrings) {
    return std::all_of(searchStrings.begin(), searchStrings.end(), [&](const QString& needle) {
        return platform::containsFolded(text, needle);
    });
}

}  // namespace links
