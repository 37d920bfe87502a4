#pragma once

#include <mutex>
#include <vector>

#include "platform/net/cookie_storage.h"

namespace http {

/// The cookies that responses of this run have set. They also lie in the shared jar; the list is
/// what lets them be taken out of it again. Any thread.
class SessionCookies {
public:
    [[nodiscard]] std::vector<platform::Cookie> cookies() const;
    /// Deletes the former ones from the shared jar.
    void setCookies(std::vector<platform::Cookie> cookies);
    /// Replaces a cookie of the same domain, path and name. Past what a jar may hold the oldest is
    /// forgotten, there as well.
    void addCookie(const platform::Cookie& cookie);

private:
    mutable std::recursive_mutex sessionCookieLock_;  ///< Guards the list.
    std::vector<platform::Cookie> cookies_;
};

}  // namespace http
