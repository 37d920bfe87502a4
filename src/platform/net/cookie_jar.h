#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "platform/net/cookie_storage.h"

namespace platform {

/// Cookies by domain, within bounds. One thread.
class CookieJar {
public:
    [[nodiscard]] std::vector<Cookie> cookiesFor(const Url& url);
    /// Answers whether anything worth keeping on disk has changed. An expired cookie takes away the
    /// one that it replaces.
    bool set(Cookie cookie);
    bool remove(const Cookie& cookie);
    /// Whether it would take the place of one that only secure servers may set, or be sent beside
    /// it (RFC 6265bis).
    [[nodiscard]] bool hidesSecureCookie(const Cookie& cookie) const;
    /// Those with a date that has not passed.
    [[nodiscard]] std::vector<Cookie> persistentCookies() const;

private:
    struct Entry {
        Cookie cookie;
        std::uint64_t created, lastUsed;
    };
    using Domain = std::vector<Entry>;

    void makeRoom(const QString& domain);

    std::map<QString, Domain> domains_;
    std::size_t count_ = 0;
    std::uint64_t clock_ = 0;  ///< Orders creations and uses.
};

}  // namespace platform
