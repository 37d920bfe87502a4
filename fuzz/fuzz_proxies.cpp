// Any text as what a script answers, as a variable that names a proxy and as one that names hosts:
// what is understood can be connected to.
#include <algorithm>

#include "fuzz_target.h"
#include "platform/net/proxies/proxy_exceptions.h"
#include "platform/net/proxies/proxy_text.h"

using platform::HTTPProxy;

namespace {

void requireUsable(const HTTPProxy& proxy) {
    if (proxy.kind == HTTPProxy::Kind::None)
        return;
    require(!proxy.host.isEmpty() && proxy.port > 0 && proxy.port < 65536);
    require(std::none_of(proxy.host.begin(), proxy.host.end(),
                         [](QChar c) { return c.unicode() <= 0x20 || c == u'/' || c == u'@'; }));
}

}  // namespace

void checkInput(const QByteArray& input) {
    const QString text = QString::fromUtf8(input);
    for (const HTTPProxy& proxy : platform::proxiesFromScriptAnswer(text))
        requireUsable(proxy);
    if (const auto proxy = platform::proxyFromAddress(text))
        requireUsable(*proxy);
    const auto url = platform::Url::parse(QStringLiteral("http://www.example.org:81/")).value();
    const bool isExcepted = platform::ProxyExceptions::fromText(text).contain(url);
    require(
        platform::ProxyExceptions::fromText(text + QStringLiteral(" example.org")).contain(url));
    require(!isExcepted || !text.trimmed().isEmpty());
}
