#include "http/request/request_header_builder.h"

#include <utility>

#include "http/extras/request_extras.h"
#include "http/http_request.h"
#include "http/request/redirect_rule.h"
#include "http/request/request_state.h"
#include "http/shared/shared_state.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::Cookie;

QString cookieHeaderValue(const std::vector<Cookie>& cookies) {
    QString value;
    for (const Cookie& cookie : cookies) {
        if (!value.isEmpty())
            value += u"; "_s;
        value += cookie.name + u'=' + cookie.value;
    }
    return value;
}

RequestHeaderBuilder::RequestHeaderBuilder(RequestState& state, RequestDefaults& defaults,
                                           RequestExtras& extras)
    : state_(state), defaults_(defaults), extras_(extras) {}

std::optional<platform::Error> RequestHeaderBuilder::build() {
    if (std::exchange(cookieHeaderIsStale_, false))
        applyCookieHeader();
    if (std::exchange(haveBuiltRequestHeaders_, true))
        return std::nullopt;
    if (state_.mainRequest != nullptr) {
        copyHeadersOfMainRequest();
        return std::nullopt;
    }
    applyCookieHeader();
    auto& headers = state_.options.requestHeaders;
    if (!headers.contains(u"User-Agent"_s)) {
        const QString agent = state_.options.userAgentString.isEmpty()
                                  ? defaults_.userAgentString()
                                  : state_.options.userAgentString;
        if (!agent.isEmpty())
            headers.set(u"User-Agent"_s, agent);
    }
    if (state_.options.allowCompressedResponse)
        headers.set(u"Accept-Encoding"_s, u"gzip"_s);
    if (state_.options.shouldCompressRequestBody)
        headers.set(u"Content-Encoding"_s, u"gzip"_s);
    return extras_.askForRest();
}

void RequestHeaderBuilder::copyHeadersOfMainRequest() {
    const auto headers = state_.mainRequest->requestHeaders();
    for (const auto& [name, value] : headers.fields())
        state_.options.requestHeaders.set(name, value);
}

void RequestHeaderBuilder::applyCookieHeader() {
    auto& own = state_.options.requestCookies;
    if (state_.options.useCookiePersistence) {
        const auto stored = platform::sharedCookieStorage().cookiesForUrl(state_.url);
        own.insert(own.end(), stored.begin(), stored.end());
    }
    const auto cookies = state_.mainRequest != nullptr ? state_.mainRequest->requestCookies() : own;
    if (cookies.empty())
        return;
    state_.options.requestHeaders.set(u"Cookie"_s, cookieHeaderValue(cookies));
    madeCookieHeader_ = true;
}

void RequestHeaderBuilder::redirectAsGet() {
    auto& headers = state_.options.requestHeaders;
    headers = headersForRedirectAsGet(headers);
    haveBuiltRequestHeaders_ = false;
    madeCookieHeader_ = false;
}

void RequestHeaderBuilder::redirectKeepingMethod() {
    auto& headers = state_.options.requestHeaders;
    if (std::exchange(madeCookieHeader_, false))
        headers.remove(u"Cookie"_s);
    if (!state_.redirectURL.hasSameOrigin(state_.url))
        headers = headersForOtherOrigin(headers);
    cookieHeaderIsStale_ = true;
}

}  // namespace http
