// Any text as a cookie of a server: what is accepted belongs to its host, and can be sent back
// within one header field.
#include "fuzz_target.h"
#include "platform/net/cookie_rules.h"
#include "platform/net/cookie_storage.h"

void checkInput(const QByteArray& input) {
    const auto url = platform::Url::parse(QStringLiteral("https://www.example.co.uk/a/b")).value();
    platform::HTTPHeaders headers;
    headers.add(QStringLiteral("Set-Cookie"), QString::fromUtf8(input));
    const auto cookies = platform::cookiesFromHeaders(headers, url);
    for (const platform::Cookie& cookie : cookies) {
        require(platform::domainMatches(url.host(), cookie.domain));
        require(!platform::isPublicSuffix(cookie.domain) && cookie.path.startsWith(u'/'));
        for (const QString& text : {cookie.name, cookie.value})
            require(!text.contains(u';') && !text.contains(u'\r') && !text.contains(u'\n'));
    }
    const auto storage = platform::makeCookieStorage({});
    storage->setCookies(cookies, url);
    for (const platform::Cookie& cookie : storage->cookiesForUrl(url))
        storage->deleteCookie(cookie);
    require(storage->cookiesForUrl(url).empty());
}
