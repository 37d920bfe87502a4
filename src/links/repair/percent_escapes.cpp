#include "links/repair/percent_escapes.h"

#include <QByteArray>
#include <QStringDecoder>
#include <algorithm>

#include "links/settings.h"
#include "links/text/trimming.h"

namespace links {
namespace {

constexpr QChar percent = u'%';

/// The value of a hexadecimal digit; -1: it is none.
int hexValue(QChar unit) {
    const char16_t code = unit.unicode();
    if (code >= u'0' && code <= u'9')
        return code - u'0';
    const char16_t lower = code | 0x20;
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

bool isEscapeAt(QStringView text, qsizetype index) {
    return text[index] == percent && index + 2 < text.size() && hexValue(text[index + 1]) >= 0 &&
           hexValue(text[index + 2]) >= 0;
}

bool hasOnlyWellFormedEscapes(QStringView text) {
    for (qsizetype index = text.indexOf(percent); index >= 0;
         index = text.indexOf(percent, index + 3)) {
        if (!isEscapeAt(text, index))
            return false;
    }
    return true;
}

/// Takes the bytes of the escapes that follow each other at `index`, and moves it behind them.
QByteArray takeEscapedBytes(QStringView text, qsizetype& index) {
    QByteArray bytes;
    for (; index < text.size() && text[index] == percent; index += 3)
        bytes.append(static_cast<char>(hexValue(text[index + 1]) * 16 + hexValue(text[index + 2])));
    return bytes;
}

/// Nothing: the bytes of some run of escapes are not text in this encoding.
std::optional<QString> decodedAs(QStringConverter::Encoding encoding, QStringView text) {
    QString result;
    result.reserve(text.size());
    for (qsizetype index = 0; index < text.size();) {
        const qsizetype next = text.indexOf(percent, index);
        result.append(text.sliced(index, (next < 0 ? text.size() : next) - index));
        if (next < 0)
            break;
        index = next;
        // Stateless, so that a sequence cut short is an error, not something to wait for.
        QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless |
                                             QStringConverter::Flag::ConvertInitialBom);
        const QString decoded = decoder(takeEscapedBytes(text, index));
        if (decoder.hasError())
            return std::nullopt;
        result.append(decoded);
    }
    return result;
}

bool isLegalInURL(char16_t code) {
    if ((code >= u'a' && code <= u'z') || (code >= u'A' && code <= u'Z') ||
        (code >= u'0' && code <= u'9'))
        return true;
    return QStringView(u"-._~:/?@!$&'()*+,;=").contains(QChar(code));
}

/// Where the brackets around an IPv6 host stand; -1: the text has none.
struct HostBrackets {
    qsizetype opening = -1;
    qsizetype closing = -1;
};

HostBrackets hostBrackets(QStringView text) {
    const qsizetype slashes = text.indexOf(u"//");
    if (slashes < 0 || (slashes > 0 && text[slashes - 1] != u':'))
        return {};
    qsizetype end = slashes + 2;
    while (end < text.size() && !QStringView(u"/?#").contains(text[end]))
        ++end;
    const QStringView authority = text.first(end);
    const qsizetype host = std::max(slashes + 2, authority.lastIndexOf(u'@') + 1);
    const qsizetype closing = authority.indexOf(u']', host);
    if (closing < 0 || authority[host] != u'[')
        return {};
    return {host, closing};
}

void appendEscaped(QString& result, QStringView character) {
    static constexpr char16_t digits[] = u"0123456789ABCDEF";
    const QByteArray bytes = character.toUtf8();
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        result.append(percent).append(digits[value >> 4]).append(digits[value & 15]);
    }
}

}  // namespace

QString stringByReplacingPercentEscapesIfNecessary(const QString& text) {
    if (!text.contains(percent) || !hasOnlyWellFormedEscapes(text))
        return text;
    if (const auto decoded = decodedAs(QStringConverter::Utf8, text))
        return *decoded;
    // Every byte is a character of ISO Latin 1, so there is no third encoding to try.
    return decodedAs(QStringConverter::Latin1, text).value_or(text);
}

QString stringByReplacingPlusAndPercentEscapesIfNecessary(const QString& text) {
    if (text.contains(u'+')) {
        QString blanks = text;
        const QString trimmed = trimmedString(blanks.replace(u'+', u' '));
        if (!trimmed.isEmpty())
            return stringByReplacingPercentEscapesIfNecessary(trimmed);
    }
    return stringByReplacingPercentEscapesIfNecessary(text);
}

PlusSigns plusSignsInNames(const platform::UserDefaults& defaults) {
    return defaults.get(settings::plusSignsStandForBlanks) ? PlusSigns::StandForBlanks
                                                           : PlusSigns::Stay;
}

QString stringByReplacingEscapesOfName(const QString& text, PlusSigns plusSigns) {
    return plusSigns == PlusSigns::StandForBlanks
               ? stringByReplacingPlusAndPercentEscapesIfNecessary(text)
               : stringByReplacingPercentEscapesIfNecessary(text);
}

std::optional<QString> URLEncodedString(const QString& text) {
    if (!text.isValidUtf16())
        return std::nullopt;
    const HostBrackets brackets = hostBrackets(text);
    const qsizetype fragment = text.indexOf(u'#');
    QString result;
    result.reserve(text.size() + text.size() / 4);
    for (qsizetype index = 0; index < text.size(); ++index) {
        const QChar unit = text[index];
        if (isLegalInURL(unit.unicode()) || isEscapeAt(text, index) || index == fragment ||
            index == brackets.opening || index == brackets.closing) {
            result.append(unit);
            continue;
        }
        const qsizetype length = unit.isHighSurrogate() ? 2 : 1;
        appendEscaped(result, QStringView(text).sliced(index, length));
        index += length - 1;
    }
    return result;
}

}  // namespace links
