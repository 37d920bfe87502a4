#include "http/shared/session_cookies.h"

#include <algorithm>

namespace http {

using platform::Cookie;

std::vector<Cookie> SessionCookies::cookies() const {
    const std::scoped_lock guard(sessionCookieLock_);
    return cookies_;
}

void SessionCookies::setCookies(std::vector<Cookie> cookies) {
    const std::scoped_lock guard(sessionCookieLock_);
    for (const Cookie& cookie : cookies_)
        platform::sharedCookieStorage().deleteCookie(cookie);
    cookies_ = std::move(cookies);
}

void SessionCookies::addCookie(const Cookie& cookie) {
    const std::scoped_lock guard(sessionCookieLock_);
    const auto former = std::find_if(cookies_.begin(), cookies_.end(), [&](const Cookie& other) {
        return other.isSameCookie(cookie);
    });
    if (former != cookies_.end())
        cookies_.erase(former);
    cookies_.push_back(cookie);
    if (cookies_.size() <= platform::mostCookies)
        return;
    platform::sharedCookieStorage().deleteCookie(cookies_.front());
    cookies_.erase(cookies_.begin());
}

}  // namespace http
