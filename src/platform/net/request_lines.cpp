#include "platform/net/request_lines.h"

#include <algorithm>
#include <array>

#include "platform/text/ascii.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

bool consistsOf(QStringView text, QStringView othersAllowed) {
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [&](QChar c) {
        return isAsciiAlphanumeric(c) || othersAllowed.contains(c);
    });
}

/// RFC 9110, 5.6.2.
bool isToken(QStringView text) {
    return consistsOf(text, u"!#$%&'*+-.^_`|~");
}

bool isFieldValue(QStringView text) {
    return std::none_of(text.begin(), text.end(), [](QChar c) {
        return (c.unicode() < 0x20 && c != u'\t') || c.unicode() == 0x7f;
    });
}

bool isAnyOf(const QString& name, std::initializer_list<QLatin1String> names) {
    return std::any_of(names.begin(), names.end(), [&name](QLatin1String other) {
        return name.compare(other, Qt::CaseInsensitive) == 0;
    });
}

/// What the transport decides. A body is framed by its length alone, and nobody waits for a "100".
bool belongsToTransport(const QString& name) {
    return isAnyOf(name, {"Host"_L1, "Content-Length"_L1, "Transfer-Encoding"_L1, "Expect"_L1,
                          "Proxy-Connection"_L1, "Upgrade"_L1, "Trailer"_L1});
}

QByteArray encoded(const QString& text) {
    const bool isLatin1 =
        std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x100; });
    return isLatin1 ? text.toLatin1() : text.toUtf8();
}

bool appendField(CurlLines& lines, const HTTPHeaders::Field& field) {
    const QByteArray value = encoded(field.second).trimmed();
    const QByteArray name = field.first.toLatin1();
    return lines.append((value.isEmpty() ? name + ';' : name + ": " + value).constData());
}

}  // namespace

bool isPlainHost(const QString& host) {
    // A colon occurs in an address of IPv6 only, which the URL had in brackets; it may end in a
    // zone (RFC 6874).
    const qsizetype zone = host.contains(u':') ? host.indexOf(u"%25") : -1;
    return zone < 0
               ? consistsOf(host, u"-._~!$&'()*+,=:")
               : consistsOf(host.first(zone), u":.") && consistsOf(host.sliced(zone + 3), u"-._~");
}

bool isSendable(const HTTPRequestMessage& message) {
    const Url& url = message.url;
    const int port = url.effectivePort().value_or(0);
    const bool isHttp = url.hasScheme("http") || url.hasScheme("https");
    // A server's own tunnel is no exchange.
    const bool isTunnel = message.method == "CONNECT"_L1;
    return isHttp && isPlainHost(url.host()) && port > 0 && port < 65536 &&
           isToken(message.method) && !isTunnel;
}

std::optional<RequestLines> requestLines(const HTTPRequestMessage& message,
                                         const RequestRoute& route) {
    const bool usesTunnel = route.usesHttpProxy && message.url.hasScheme("https");
    RequestLines lines;
    bool fits = true;
    for (const HTTPHeaders::Field& field : message.headers.fields()) {
        const QString& name = field.first;
        if (!isToken(name) || !isFieldValue(field.second) || belongsToTransport(name))
            continue;
        const bool isForProxy = isAnyOf(name, {"Proxy-Authorization"_L1});
        if (isForProxy && !route.usesHttpProxy)
            continue;
        const bool goesIntoTunnel = !(usesTunnel && isForProxy);
        fits = fits && (!goesIntoTunnel || appendField(lines.server, field));
        if (usesTunnel && (isForProxy || isAnyOf(name, {"User-Agent"_L1})))
            fits = fits && appendField(lines.proxy, field);
    }
    for (const char* own : {"Accept", "Content-Type", "User-Agent"}) {
        if (!message.headers.contains(QString::fromLatin1(own)))
            fits = fits && lines.server.append((QByteArray(own) + ':').constData());
    }
    fits = fits && lines.server.append("Expect:") && lines.server.append("Proxy-Connection:") &&
           lines.proxy.append("Proxy-Connection:");
    // RFC 9110, 8.6: such a method without a body says so.
    if (!route.hasBody && isAnyOf(message.method, {"POST"_L1, "PUT"_L1, "PATCH"_L1}))
        fits = fits && lines.server.append("Content-Length: 0");
    return fits ? std::optional<RequestLines>(std::move(lines)) : std::nullopt;
}

}  // namespace platform
