#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "platform/base/error.h"
#include "platform/net/cookie_storage.h"

namespace http {

class RequestDefaults;
class RequestExtras;
struct RequestState;

/// Puts together the headers that a request sends beside those of its caller.
///
/// Under the request's lock.
class RequestHeaderBuilder {
public:
    RequestHeaderBuilder(RequestState& state, RequestDefaults& defaults, RequestExtras& extras);

    /// Only the first call does anything, until a redirect asks for more. An error: the file to be
    /// gone on with cannot be looked at.
    [[nodiscard]] std::optional<platform::Error> build();
    /// Fills "Cookie" from the jar and the request's own cookies; with none of either, a header
    /// that is there stays.
    void applyCookieHeader();

    /// Gives up all headers but the few that a redirect as GET keeps; `build` starts over.
    void redirectAsGet();
    /// Keeps the headers, but neither the cookies of the address that is left nor, on the way to
    /// another origin, its secrets.
    void redirectKeepingMethod();

private:
    void copyHeadersOfMainRequest();

    RequestState& state_;
    RequestDefaults& defaults_;
    RequestExtras& extras_;
    bool haveBuiltRequestHeaders_ = false;
    bool madeCookieHeader_ = false;
    bool cookieHeaderIsStale_ = false;
};

/// The value of a "Cookie" header (RFC 6265, 4.2).
[[nodiscard]] QString cookieHeaderValue(const std::vector<platform::Cookie>& cookies);

}  // namespace http
