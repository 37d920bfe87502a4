#include "links/text/trimming.h"

namespace links {
namespace {

constexpr char16_t zeroWidthSpace = 0x200B;

template <typename Predicate>
QStringView trimmedBy(QStringView text, const Predicate& isTrimmed) {
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isTrimmed(text[begin]))
        ++begin;
    while (end > begin && isTrimmed(text[end - 1]))
        --end;
    return text.sliced(begin, end - begin);
}

}  // namespace

bool isWhitespaceOrNewline(QChar unit) {
    return unit.isSpace() || unit == zeroWidthSpace;
}

bool isNewline(QChar unit) {
    const char16_t code = unit.unicode();
    return (code >= 0x0A && code <= 0x0D) || code == 0x85 || code == 0x2028 || code == 0x2029;
}

QString trimmedString(const QString& text) {
    const QStringView trimmed = trimmedView(text);
    return trimmed.size() == text.size() ? text : trimmed.toString();
}

QStringView trimmedView(QStringView text) {
    return trimmedBy(text, isWhitespaceOrNewline);
}

QStringList stringsByTrimmingCharactersInSet(const QStringList& texts,
                                             const std::function<bool(QChar)>& isTrimmed) {
    QStringList result;
    result.reserve(texts.size());
    for (const QString& text : texts)
        result.append(trimmedBy(text, isTrimmed).toString());
    return result;
}

}  // namespace links
