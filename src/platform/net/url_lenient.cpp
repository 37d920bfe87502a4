#include <QUrl>
#include <algorithm>

#include "platform/net/url.h"

#include "platform/text/ascii.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

// RFC 3986: what each part may hold beside letters, digits and "-._~".
constexpr char userInfoCharacters[] = "!$&'()*+,;=:";
constexpr char pathCharacters[] = "!$&'()*+,;=:@/";
constexpr char queryCharacters[] = "!$&'()*+,;=:@/?";

bool isEscape(const QByteArray& bytes, qsizetype at) {
    const auto isHex = [&bytes](qsizetype i) {
        return i < bytes.size() && std::isxdigit(static_cast<unsigned char>(bytes[i])) != 0;
    };
    return bytes[at] == '%' && isHex(at + 1) && isHex(at + 2);
}

/// Escapes what is neither legal nor an escape already.
QString escaped(QStringView part, const QByteArray& legal) {
    const QByteArray bytes = part.toUtf8();
    QByteArray result;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const QByteArray one = bytes.mid(i, 1);
        result += isEscape(bytes, i) ? one : one.toPercentEncoding(legal);
    }
    return QString::fromLatin1(result);
}

bool isScheme(QStringView text) {
    const auto isLegal = [](QChar c) {
        return isAsciiAlphanumeric(c) || QStringView(u"+-.").contains(c);
    };
    return !text.isEmpty() && isAsciiLetter(text.front()) &&
           std::all_of(text.begin(), text.end(), isLegal);
}

struct Split {
    QStringView head, tail;  ///< `tail` begins with the separator or is empty.
};

Split splitAtFirst(QStringView text, QStringView separators) {
    const auto at =
        std::find_if(text.begin(), text.end(), [&](QChar c) { return separators.contains(c); });
    const qsizetype length = at - text.begin();
    return {text.left(length), text.mid(length)};
}

/// Nothing: no host name at all.
std::optional<QString> asciiAuthority(QStringView authority) {
    const qsizetype at = authority.lastIndexOf(u'@');
    QString result;
    if (at >= 0)
        result = escaped(authority.left(at), userInfoCharacters) + u'@';
    QStringView host = authority.mid(at + 1);
    QStringView port;
    if (const qsizetype colon = host.lastIndexOf(u':'); colon > host.lastIndexOf(u']')) {
        port = host.mid(colon);
        host = host.left(colon);
    }
    if (host.startsWith(u'[')) {
        // A zone as commands print it, with a bare percent sign.
        QString literal = host.toString();
        if (literal.count(u'%') == 1 && !literal.contains("%25"_L1))
            literal.replace(u'%', "%25"_L1);
        return result + literal + port.toString();
    }
    const QString ascii =
        isAscii(host) ? host.toString() : QString::fromLatin1(QUrl::toAce(host.toString()));
    if (ascii.isEmpty() && !host.isEmpty())
        return std::nullopt;
    return result + ascii + port.toString();
}

}  // namespace

std::optional<Url> Url::parseLenient(const QString& text) {
    const QString trimmed = text.trimmed();
    if (auto strict = parse(trimmed))
        return strict;
    QStringView rest = trimmed;
    QString result;
    if (const Split split = splitAtFirst(rest, u":/?#");
        split.tail.startsWith(u':') && isScheme(split.head)) {
        result = split.head.toString() + u':';
        rest = split.tail.mid(1);
    }
    if (rest.startsWith("//"_L1)) {
        const Split split = splitAtFirst(rest.mid(2), u"/?#");
        const auto authority = asciiAuthority(split.head);
        if (!authority)
            return std::nullopt;
        result += u"//"_s + *authority;
        rest = split.tail;
    }
    const Split path = splitAtFirst(rest, u"?#");
    result += escaped(path.head, pathCharacters);
    const Split query = splitAtFirst(path.tail, u"#");
    if (!query.head.isEmpty())
        result += u'?' + escaped(query.head.mid(1), queryCharacters);
    if (!query.tail.isEmpty())
        result += u'#' + escaped(query.tail.mid(1), queryCharacters);
    return parse(result);
}

}  // namespace platform
