#include "links/recognition/text_marks.h"

#include <algorithm>

#include "links/text/trimming.h"
#include "platform/text/ascii.h"

namespace links {

bool isInvisible(QChar unit) {
    const char16_t code = unit.unicode();
    return code == 0xAD || code == 0xFEFF || (code >= 0x200B && code <= 0x200F) ||
           (code >= 0x202A && code <= 0x202E) || (code >= 0x2060 && code <= 0x206F);
}

bool isQuotationMark(QChar unit) {
    return QStringView(
               u"\"'`\u00AB\u00BB\u2018\u2019\u201A\u201B\u201C\u201D\u201E\u201F\u2039"
               u"\u203A\u300C\u300D\u300E\u300F\u301D\u301E\u301F\uFF02\uFF07")
        .contains(unit);
}

bool isWidePunctuation(QChar unit) {
    return QStringView(
               u"\u3001\u3002\u3008\u3009\u300A\u300B\u3010\u3011\u3014\u3015\uFF01\uFF08"
               u"\uFF09\uFF0C\uFF1A\uFF1B\uFF1F\uFF3B\uFF3D\uFF5E")
        .contains(unit);
}

bool isTrailingPunctuation(QChar unit) {
    return QStringView(u".,;:!?\u2026").contains(unit);
}

QStringView withoutMarks(QStringView text) {
    const auto goes = [](QChar unit) { return isWhitespaceOrNewline(unit) || isInvisible(unit); };
    while (!text.isEmpty() && goes(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && goes(text.back()))
        text.chop(1);
    return text;
}

qsizetype endOfRangeGroup(QStringView text, qsizetype position) {
    constexpr qsizetype longestGroup = 1000;
    if (text[position] != u'{')
        return position;
    const QStringView rest = text.sliced(position);
    const qsizetype length = rest.first(std::min(rest.size(), longestGroup)).indexOf(u'}');
    if (length < 0)
        return position;
    const QStringView inside = rest.first(length);
    const bool isGroup = inside.contains(u',') || inside.contains(u'-');
    return isGroup && !inside.contains(u':') && !inside.contains(u'"') ? position + length + 1
                                                                       : position;
}

bool endsInExtension(QStringView address) {
    constexpr qsizetype longestExtension = 5;
    const qsizetype dot = address.lastIndexOf(u'.');
    const qsizetype host = address.indexOf(u"://") + 3;
    if (dot < 0 || address.indexOf(u'/', host) < 0 || address.indexOf(u'/', host) > dot)
        return false;
    const QStringView extension = address.sliced(dot + 1);
    return !extension.isEmpty() && extension.size() <= longestExtension &&
           std::any_of(extension.begin(), extension.end(), platform::isAsciiLetter) &&
           std::all_of(extension.begin(), extension.end(), platform::isAsciiAlphanumeric);
}

}  // namespace links
