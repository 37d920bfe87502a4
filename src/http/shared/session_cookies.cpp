#include "http/shared/session_cookies.h"

#include <algorithm>

namespace http {

using platform::Cookie;

std::vector<Cookie> SessionCookies::cookies() const {
    const std::scoped_lock guard(_sessionCookieLock);
    return _cookies;
}

void SessionCookies::setCookies(std::vector<Cookie> cookies) {
    const std::scoped_lock guard(_sessionCookieLock);
    for (const Cookie& cookie : _cookies)
        platform::sharedCookieStorage().deleteCookie(cookie);
    _cookies = std::move(cookies);
}

void SessionCookies::addCookie(const Cookie& cookie) {
    const std::scoped_lock guard(_sessionCookieLock);
    const auto former = std::find_if(_cookies.begin(), _cookies.end(), [&](const Cookie& other) {
        return other.isSameCookie(cookie);
    });
    if (former != _cookies.end())
        _cookies.erase(former);
    _cookies.push_back(cookie);
    if (_cookies.size() <= platform::mostCookies)
        return;
    platform::sharedCookieStorage().deleteCookie(_cookies.front());
    _cookies.erase(_cookies.begin());
}

}  // namespace http
