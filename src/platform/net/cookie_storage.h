#pragma once

#include <QDateTime>
#include <QString>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/net/http_message.h"

namespace platform {

/// RFC 6265bis, as browsers have it.
struct Cookie {
    QString name, value, domain, path;
    bool hostOnly = true;
    bool secure = false;
    bool httpOnly = false;
    /// Invalid: a session cookie.
    QDateTime expires;

    [[nodiscard]] bool isSameCookie(const Cookie& other) const {
        return name == other.name && domain == other.domain && path == other.path;
    }
};

/// No jar keeps more than so many, in all and of one domain; the least recently used go first.
inline constexpr std::size_t mostCookies = 3000, mostCookiesInDomain = 180;

/// The cookies of a response to `url`; left out are malformed ones, those for foreign or
/// public-suffix domains, those that promise more security than they have, and those past as many
/// as a domain may have.
[[nodiscard]] std::vector<Cookie> cookiesFromHeaders(const HTTPHeaders& headers, const Url& url);

/// The jar that all requests share. Any thread.
class CookieStorage {
public:
    virtual ~CookieStorage() = default;
    /// Those to send, longest path first.
    [[nodiscard]] virtual std::vector<Cookie> cookiesForUrl(const Url& url) const = 0;
    /// A `url` that is not https leaves cookies alone that were set as secure.
    virtual void setCookies(const std::vector<Cookie>& cookies, const Url& url) = 0;
    virtual void deleteCookie(const Cookie& cookie) = 0;
};

/// Keeps persistent cookies in `path` (0600, written atomically); empty: in memory only.
[[nodiscard]] std::unique_ptr<CookieStorage> makeCookieStorage(const QString& path);

/// The program's own jar, as installed by the composition root or by a test; an empty one in
/// memory until then.
[[nodiscard]] CookieStorage& sharedCookieStorage();
void installSharedCookieStorage(CookieStorage* storage);

}  // namespace platform
