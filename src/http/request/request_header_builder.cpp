#include "http/request/request_header_builder.h"

#include <utility>

#include "http/http_request.h"
#include "http/request/file_output.h"
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

RequestHeaderBuilder::RequestHeaderBuilder(RequestState& state, RequestDefaults& defaults)
    : _state(state), _defaults(defaults) {}

std::optional<platform::Error> RequestHeaderBuilder::build() {
    if (std::exchange(_cookieHeaderIsStale, false))
        applyCookieHeader();
    if (std::exchange(_haveBuiltRequestHeaders, true))
        return std::nullopt;
    if (_state.mainRequest != nullptr) {
        copyHeadersOfMainRequest();
        return std::nullopt;
    }
    applyCookieHeader();
    auto& headers = _state.options.requestHeaders;
    if (!headers.contains(u"User-Agent"_s)) {
        const QString agent = _state.options.userAgentString.isEmpty()
                                  ? _defaults.userAgentString()
                                  : _state.options.userAgentString;
        if (!agent.isEmpty())
            headers.set(u"User-Agent"_s, agent);
    }
    if (_state.options.allowCompressedResponse)
        headers.set(u"Accept-Encoding"_s, u"gzip"_s);
    if (_state.options.shouldCompressRequestBody)
        headers.set(u"Content-Encoding"_s, u"gzip"_s);
    const auto error = updatePartialDownloadSize(_state);
    if (_state.partialDownloadSize > 0)
        headers.set(u"Range"_s, rangeFrom(_state.partialDownloadSize));
    return error;
}

void RequestHeaderBuilder::copyHeadersOfMainRequest() {
    const auto headers = _state.mainRequest->requestHeaders();
    for (const auto& [name, value] : headers.fields())
        _state.options.requestHeaders.set(name, value);
}

void RequestHeaderBuilder::applyCookieHeader() {
    auto& own = _state.options.requestCookies;
    if (_state.options.useCookiePersistence) {
        const auto stored = platform::sharedCookieStorage().cookiesForUrl(_state.url);
        own.insert(own.end(), stored.begin(), stored.end());
    }
    const auto cookies = _state.mainRequest != nullptr ? _state.mainRequest->requestCookies() : own;
    if (cookies.empty())
        return;
    _state.options.requestHeaders.set(u"Cookie"_s, cookieHeaderValue(cookies));
    _madeCookieHeader = true;
}

void RequestHeaderBuilder::redirectAsGet() {
    auto& headers = _state.options.requestHeaders;
    headers = headersForRedirectAsGet(headers);
    _haveBuiltRequestHeaders = false;
    _madeCookieHeader = false;
}

void RequestHeaderBuilder::redirectKeepingMethod() {
    auto& headers = _state.options.requestHeaders;
    if (std::exchange(_madeCookieHeader, false))
        headers.remove(u"Cookie"_s);
    if (!_state.redirectURL.hasSameOrigin(_state.url))
        headers = headersForOtherOrigin(headers);
    _cookieHeaderIsStale = true;
}

}  // namespace http
