#include "platform/net/url.h"

#include <uriparser/Uri.h>

#include <QFile>
#include <QStringDecoder>
#include <algorithm>
#include <cctype>
#include <cstring>
#include <limits>

#include "platform/text/ascii.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

bool isUriReference(const QByteArray& text) {
    UriUriA uri;
    const char* errorPosition = nullptr;
    const int result = uriParseSingleUriExA(&uri, text.constData(), text.constData() + text.size(),
                                            &errorPosition);
    if (result == URI_SUCCESS)
        uriFreeUriMembersA(&uri);
    return result == URI_SUCCESS;
}

/// As written where the escaped bytes are no UTF-8.
QString percentDecoded(QStringView encoded) {
    if (!encoded.contains(u'%'))
        return encoded.toString();
    const QByteArray bytes = QByteArray::fromPercentEncoding(encoded.toLatin1());
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(bytes);
    return decoder.hasError() ? encoded.toString() : text;
}

/// RFC 3986, 5.2.4.
QString withoutDotSegments(QStringView path) {
    QString output;
    while (!path.isEmpty()) {
        if (path.startsWith("../"_L1)) {
            path = path.mid(3);
        } else if (path.startsWith("./"_L1) || path.startsWith("/./"_L1)) {
            path = path.mid(2);
        } else if (path == "/."_L1) {
            path = path.left(1);
        } else if (path.startsWith("/../"_L1) || path == "/.."_L1) {
            path = path == "/.."_L1 ? path.left(1) : path.mid(3);
            output.truncate(std::max<qsizetype>(0, output.lastIndexOf(u'/')));
        } else if (path == "."_L1 || path == ".."_L1) {
            path = {};
        } else {
            const qsizetype end = path.indexOf(u'/', 1);
            output += end < 0 ? path : path.left(end);
            path = end < 0 ? QStringView() : path.mid(end);
        }
    }
    return output;
}

/// Without the zone of an IPv6 address, which the grammar learned later (RFC 6874, 2).
QByteArray withoutZone(const QByteArray& text) {
    const qsizetype opening = text.indexOf("//") + 2;
    const qsizetype authorityEnd =
        std::find_if(text.begin() + opening, text.end(),
                     [](char c) { return std::strchr("/?#", c) != nullptr; }) -
        text.begin();
    const qsizetype bracket = text.indexOf('[', opening);
    const qsizetype zone = bracket < 0 ? -1 : text.indexOf("%25", bracket);
    const qsizetype closing = zone < 0 ? -1 : text.indexOf(']', zone);
    if (opening < 2 || closing < 0 || closing > authorityEnd || closing == zone + 3)
        return text;
    const bool isPlain = std::all_of(text.begin() + zone + 3, text.begin() + closing, [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 ||
               std::strchr("-._~", c) != nullptr;
    });
    return isPlain ? text.first(zone) + text.sliced(closing) : text;
}

}  // namespace

std::optional<Url> Url::parse(const QString& text) {
    if (text.size() > longest || !isAscii(text) || text.contains(QChar(u'\0')) ||
        !isUriReference(withoutZone(text.toLatin1())))
        return std::nullopt;
    Url url;
    url.text_ = text;
    url.findParts();
    return url;
}

Url::Position Url::firstOf(QStringView stops, Position from) const {
    const auto stop =
        std::find_first_of(text_.begin() + from, text_.end(), stops.begin(), stops.end());
    return static_cast<Position>(stop - text_.begin());
}

void Url::findParts() {
    const Position schemeEnd = firstOf(u":/?#", 0);
    const bool hasScheme = schemeEnd < text_.size() && text_[schemeEnd] == u':';
    parts_.schemeEnd = hasScheme ? schemeEnd : 0;
    parts_.pathStart = hasScheme ? schemeEnd + 1 : 0;
    if (QStringView(text_).mid(parts_.pathStart).startsWith("//"_L1)) {
        parts_.authorityStart = parts_.pathStart + 2;
        parts_.pathStart = firstOf(u"/?#", parts_.authorityStart);
        findAuthorityParts();
    }
    parts_.pathEnd = firstOf(u"?#", parts_.pathStart);
    parts_.queryEnd = parts_.pathEnd;
    if (parts_.pathEnd < text_.size() && text_[parts_.pathEnd] == u'?') {
        parts_.queryStart = parts_.pathEnd + 1;
        parts_.queryEnd = firstOf(u"#", parts_.queryStart);
    }
    if (parts_.queryEnd < text_.size())
        parts_.fragmentStart = parts_.queryEnd + 1;
}

void Url::findAuthorityParts() {
    const Position end = parts_.pathStart;
    const QStringView authority = QStringView(text_).left(end).mid(parts_.authorityStart);
    const auto at = static_cast<Position>(authority.indexOf(u'@'));
    parts_.hostStart = parts_.authorityStart + at + 1;
    if (at >= 0)
        parts_.userInfoEnd = parts_.authorityStart + at;
    parts_.hostEnd = end;
    const QStringView hostAndPort = authority.mid(at + 1);
    const auto colon = static_cast<Position>(hostAndPort.lastIndexOf(u':'));
    if (colon > hostAndPort.lastIndexOf(u']')) {
        parts_.hostEnd = parts_.hostStart + colon;
        parts_.portStart = parts_.hostEnd + 1;
        parts_.portEnd = end;
    }
}

QStringView Url::part(qsizetype start, qsizetype end) const {
    return start < 0 || end <= start ? QStringView() : QStringView(text_).mid(start, end - start);
}

Url Url::fromFilePath(const QString& path) {
    const QByteArray encoded =
        QFile::encodeName(path).toPercentEncoding(QByteArrayLiteral("/!$&'()*+,;=:@"));
    return parse(u"file://"_s + QString::fromLatin1(encoded)).value_or(Url());
}

QString Url::scheme() const {
    return part(0, parts_.schemeEnd).toString();
}

QString Url::user() const {
    const QStringView info = part(parts_.authorityStart, parts_.userInfoEnd);
    const qsizetype colon = info.indexOf(u':');
    return percentDecoded(colon < 0 ? info : info.left(colon));
}

QString Url::password() const {
    const QStringView info = part(parts_.authorityStart, parts_.userInfoEnd);
    const qsizetype colon = info.indexOf(u':');
    return colon < 0 ? QString() : u""_s + percentDecoded(info.mid(colon + 1));
}

bool Url::hasUserInfo() const {
    return parts_.userInfoEnd >= 0;
}

QString Url::host() const {
    const QStringView host = part(parts_.hostStart, parts_.hostEnd);
    if (host.startsWith(u'[') && host.endsWith(u']'))
        return host.mid(1, host.size() - 2).toString();
    return percentDecoded(host);
}

std::optional<int> Url::port() const {
    const QStringView digits = part(parts_.portStart, parts_.portEnd);
    if (digits.isEmpty())
        return std::nullopt;
    bool fits = false;
    const int port = digits.toInt(&fits);
    return fits ? port : std::numeric_limits<int>::max();
}

std::optional<int> Url::effectivePort() const {
    if (const auto written = port())
        return written;
    if (hasScheme("http"))
        return 80;
    return hasScheme("https") ? std::optional<int>(443) : std::nullopt;
}

QString Url::path() const {
    return percentDecoded(part(parts_.pathStart, parts_.pathEnd));
}

QString Url::encodedPath() const {
    return part(parts_.pathStart, parts_.pathEnd).toString();
}

std::optional<QString> Url::query() const {
    if (parts_.queryStart < 0)
        return std::nullopt;
    return part(parts_.queryStart, parts_.queryEnd).toString();
}

std::optional<QString> Url::fragment() const {
    if (parts_.fragmentStart < 0)
        return std::nullopt;
    return part(parts_.fragmentStart, text_.size()).toString();
}

QString Url::lastPathComponent() const {
    QStringView path = part(parts_.pathStart, parts_.pathEnd);
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path == "/"_L1 ? u"/"_s : percentDecoded(path.mid(path.lastIndexOf(u'/') + 1));
}

bool Url::hasScheme(const char* lowerCaseScheme) const {
    return part(0, parts_.schemeEnd).compare(QLatin1String(lowerCaseScheme), Qt::CaseInsensitive) ==
           0;
}

QString Url::filePath() const {
    const QString machine = host();
    const bool isLocal =
        machine.isEmpty() || machine.compare("localhost"_L1, Qt::CaseInsensitive) == 0;
    if (!isFile() || !isLocal) {
        return {};
    }
    const QByteArray bytes = QByteArray::fromPercentEncoding(encodedPath().toLatin1());
    return bytes.contains('\0') ? QString() : QFile::decodeName(bytes);
}

std::optional<Url> Url::resolved(const QString& reference) const {
    const auto parsed = parse(reference);
    if (!parsed)
        return std::nullopt;
    const Url& other = *parsed;
    const Url& schemeSource = other.parts_.schemeEnd > 0 ? other : *this;
    const bool keepsAuthority = other.parts_.schemeEnd == 0 && other.parts_.authorityStart < 0;
    const bool keepsPath = keepsAuthority && other.parts_.pathEnd == other.parts_.pathStart;
    const Url& authoritySource = keepsAuthority ? *this : other;
    const Url& querySource = keepsPath && other.parts_.queryStart < 0 ? *this : other;

    QString path = encodedPath();
    if (!keepsPath) {
        const QString written = other.encodedPath();
        path = withoutDotSegments(keepsAuthority ? mergedPath(written) : written);
    }
    QString prefix;
    if (schemeSource.parts_.schemeEnd > 0)
        prefix = schemeSource.scheme() + u':';
    if (authoritySource.parts_.authorityStart >= 0) {
        prefix += u"//"_s;
        prefix += authoritySource.part(authoritySource.parts_.authorityStart,
                                       authoritySource.parts_.pathStart);
    } else if (path.startsWith("//"_L1)) {
        prefix += u"/."_s;  // Else the path would read as an authority.
    }
    QString suffix;
    if (const auto query = querySource.query())
        suffix = u'?' + *query;
    if (const auto fragment = other.fragment())
        suffix += u'#' + *fragment;
    return parse(prefix + path + suffix);
}

QString Url::mergedPath(const QString& relativePath) const {
    if (relativePath.startsWith(u'/'))
        return relativePath;
    const QString base = encodedPath();
    if (base.isEmpty() && parts_.authorityStart >= 0)
        return u'/' + relativePath;
    return base.left(base.lastIndexOf(u'/') + 1) + relativePath;
}

Url Url::forTransfer() const {
    if (parts_.fragmentStart < 0 && !hasUserInfo())
        return *this;
    const qsizetype end = parts_.fragmentStart < 0 ? text_.size() : parts_.fragmentStart - 1;
    QString text = text_.left(end);
    if (hasUserInfo())
        text.remove(parts_.authorityStart, parts_.hostStart - parts_.authorityStart);
    return parse(text).value_or(Url());
}

bool Url::hasSameOrigin(const Url& other) const {
    return scheme().compare(other.scheme(), Qt::CaseInsensitive) == 0 &&
           host().compare(other.host(), Qt::CaseInsensitive) == 0 &&
           effectivePort() == other.effectivePort();
}

}  // namespace platform
