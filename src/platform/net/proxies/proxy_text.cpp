#include "platform/net/proxies/proxy_text.h"

#include <QMap>
#include <algorithm>

#include "platform/net/request_lines.h"
#include "platform/net/url.h"

namespace platform {

using namespace Qt::Literals::StringLiterals;
using Kind = HTTPProxy::Kind;

namespace {

constexpr int largestPort = 65535;

int defaultPort(Kind kind) {
    switch (kind) {
        case Kind::Http:
            return 80;
        case Kind::Https:
            return 443;
        case Kind::Socks4:
        case Kind::Socks5:
            return 1080;
        case Kind::None:
            break;
    }
    return 0;
}

/// By the lower-case words of addresses.
std::optional<Kind> kindOfScheme(const QString& scheme) {
    static const QMap<QString, Kind> kinds = {
        {u"http"_s, Kind::Http},     {u"https"_s, Kind::Https},    {u"socks"_s, Kind::Socks5},
        {u"socks4"_s, Kind::Socks4}, {u"socks4a"_s, Kind::Socks4}, {u"socks5"_s, Kind::Socks5},
        {u"socks5h"_s, Kind::Socks5}};
    const auto found = kinds.constFind(scheme);
    return found != kinds.cend() ? std::optional(*found) : std::nullopt;
}

/// By the lower-case words of scripts.
std::optional<Kind> kindOfWord(const QString& word) {
    if (word == u"direct"_s)
        return Kind::None;
    return kindOfScheme(word == u"proxy"_s ? u"http"_s : word);
}

std::optional<HTTPProxy> proxyOfUrl(Kind kind, const Url& url) {
    auto proxy = proxyAt(kind, url.host(), url.port().value_or(defaultPort(kind)));
    if (proxy) {
        proxy->user = url.user();
        proxy->password = url.password();
    }
    return proxy;
}

}  // namespace

std::optional<HTTPProxy> proxyAt(Kind kind, const QString& host, int port) {
    if (host.isEmpty() || !isPlainHost(host) || port < 1 || port > largestPort)
        return std::nullopt;
    return HTTPProxy{kind, host, port, {}, {}};
}

std::optional<HTTPProxy> proxyFromAddress(const QString& text) {
    const QString trimmed = text.trimmed();
    const auto url =
        Url::parseLenient(trimmed.contains(u"://"_s) ? trimmed : u"http://"_s + trimmed);
    const auto kind = url ? kindOfScheme(url->scheme().toLower()) : std::nullopt;
    return kind ? proxyOfUrl(*kind, *url) : std::nullopt;
}

std::vector<HTTPProxy> proxiesFromScriptAnswer(const QString& text) {
    std::vector<HTTPProxy> proxies;
    for (const QString& entry : text.split(u';')) {
        const QStringList words = entry.simplified().split(u' ');
        const auto kind = kindOfWord(words.first().toLower());
        if (kind == Kind::None && words.size() == 1) {
            proxies.emplace_back();
        } else if (kind && words.size() == 2) {
            const auto url = Url::parse(u"http://"_s + words[1]);
            const bool isPlace = url && url->encodedPath().isEmpty();
            if (const auto proxy = isPlace ? proxyOfUrl(*kind, *url) : std::nullopt)
                proxies.push_back(*proxy);
        }
    }
    return proxies;
}

}  // namespace platform
