#include "structured/json/flat_object.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <tuple>

namespace structured {

namespace {

constexpr char32_t replacement = 0xfffd;

constexpr quint64 everyByte(unsigned char byte) {
    return 0x0101'0101'0101'0101ULL * byte;
}

/// Whether a byte of eight is below `limit`, which is at most 128 (the usual trick: only a smaller
/// byte borrows from its highest bit).
constexpr bool hasLess(quint64 bytes, unsigned char limit) {
    return ((bytes - everyByte(limit)) & ~bytes & everyByte(0x80)) != 0;
}

constexpr bool has(quint64 bytes, char wanted) {
    return hasLess(bytes ^ everyByte(static_cast<unsigned char>(wanted)), 1);
}

bool isPlain(char c) {
    return c != '"' && c != '\\' && static_cast<unsigned char>(c) >= 0x20;
}

/// Where a string ends, or holds something else than characters that stand for themselves.
const char* endOfPlain(const char* at, const char* end) {
    quint64 eight = 0;
    while (end - at >= 8) {
        std::memcpy(&eight, at, 8);
        if (hasLess(eight, 0x20) || has(eight, '"') || has(eight, '\\'))
            break;
        at += 8;
    }
    return std::find_if_not(at, end, isPlain);
}

/// The bytes of the string that `text` begins with, quotes included. 0: none.
qsizetype stringLength(QByteArrayView text) {
    if (text.isEmpty() || text.front() != '"')
        return 0;
    for (const char* at = text.begin() + 1; at != text.end(); ++at) {
        at = endOfPlain(at, text.end());
        if (at == text.end())
            return 0;
        if (*at == '"')
            return at + 1 - text.begin();
        if (*at != '\\' || ++at == text.end())
            return 0;
    }
    return 0;
}

/// The bytes of a number or of one of the three words.
qsizetype wordLength(QByteArrayView text) {
    const auto isPart = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || c == '-' || c == '+' ||
               c == '.' || c == 'E';
    };
    const char* const end = std::find_if_not(text.begin(), text.end(), isPart);
    const QByteArrayView word(text.begin(), end);
    if (word == "true" || word == "false" || word == "null")
        return word.size();
    bool isNumber = false;
    std::ignore = QByteArray::fromRawData(word.data(), word.size()).toDouble(&isNumber);
    const bool beginsLikeOne =
        !word.isEmpty() && (word.front() == '-' || (word.front() >= '0' && word.front() <= '9'));
    return isNumber && beginsLikeOne ? word.size() : 0;
}

std::optional<char32_t> hexUnit(QByteArrayView text, qsizetype at) {
    bool isNumber = false;
    const uint unit = text.sliced(at, std::min<qsizetype>(4, text.size() - at))
                          .toByteArray()
                          .toUInt(&isNumber, 16);
    return isNumber && text.size() - at >= 4 ? std::optional<char32_t>(unit) : std::nullopt;
}

/// `at` is behind `\u`, and is moved behind what was taken.
char32_t escapedCodePoint(QByteArrayView text, qsizetype& at) {
    const auto unit = hexUnit(text, at);
    if (!unit)
        return replacement;
    at += 4;
    if (!QChar::isSurrogate(*unit))
        return *unit;
    if (QChar::isLowSurrogate(*unit) || !text.sliced(at).startsWith("\\u"))
        return replacement;
    const auto low = hexUnit(text, at + 2);
    if (!low || !QChar::isLowSurrogate(*low))
        return replacement;
    at += 6;
    return QChar::surrogateToUcs4(static_cast<char16_t>(*unit), static_cast<char16_t>(*low));
}

/// `at` is behind the backslash, and is moved behind what was taken.
QByteArray escapedText(QByteArrayView text, qsizetype& at) {
    static constexpr QByteArrayView names = "\"\\/bfnrt";
    static constexpr QByteArrayView meanings = "\"\\/\b\f\n\r\t";
    if (at >= text.size())
        return QString(QChar(replacement)).toUtf8();
    const char name = text[at++];
    if (name == 'u') {
        const char32_t codePoint = escapedCodePoint(text, at);
        return QString::fromUcs4(&codePoint, 1).toUtf8();
    }
    const qsizetype which = names.indexOf(name);
    return which >= 0 ? QByteArray(1, meanings[which]) : QString(QChar(replacement)).toUtf8();
}

}  // namespace

qsizetype jsonBlanks(QByteArrayView text) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; };
    return std::find_if_not(text.begin(), text.end(), isBlank) - text.begin();
}

qsizetype FlatObject::read(QByteArrayView text) {
    count_ = 0;
    qsizetype at = 0;
    const auto rest = [&] { return text.sliced(at); };
    const auto takes = [&](char wanted) {
        at += jsonBlanks(rest());
        const bool isThere = at < text.size() && text[at] == wanted;
        at += isThere ? 1 : 0;
        return isThere;
    };
    const auto take = [&](qsizetype length) {
        const QByteArrayView taken = text.sliced(at, length);
        at += length;
        return taken;
    };
    if (!takes('{'))
        return 0;
    if (takes('}'))
        return at;
    while (count_ < mostMembers) {
        at += jsonBlanks(rest());
        const QByteArrayView key = take(stringLength(rest()));
        if (key.isEmpty() || !takes(':'))
            return 0;
        at += jsonBlanks(rest());
        const qsizetype length = stringLength(rest());
        const QByteArrayView value = take(length > 0 ? length : wordLength(rest()));
        if (value.isEmpty())
            return 0;
        members_[count_++] = {key.sliced(1, key.size() - 2), value};
        if (takes('}'))
            return at;
        if (!takes(','))
            return 0;
    }
    return 0;
}

QByteArrayView FlatObject::value(QByteArrayView key) const {
    for (const Member& member : members()) {
        if (member.key == key)
            return member.value;
    }
    return {};
}

QString decodedJsonText(QByteArrayView written) {
    if (written.isEmpty() || written.front() != '"' || written.contains('\\'))
        return QString::fromUtf8(decodedJsonValue(written));
    return QString::fromUtf8(written.sliced(1, written.size() - 2));
}

QByteArray decodedJsonValue(QByteArrayView written) {
    if (written.isEmpty() || written.front() != '"')
        return written.toByteArray();
    const QByteArrayView text = written.sliced(1, written.size() - 2);
    QByteArray out;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype escape = text.indexOf('\\', at);
        const qsizetype end = escape < 0 ? text.size() : escape;
        out += text.sliced(at, end - at);
        at = end + 1;
        if (escape >= 0)
            out += escapedText(text, at);
    }
    return out;
}

}  // namespace structured
