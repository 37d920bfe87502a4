#include "http/request/redirect_rule.h"

#include "http/request_options.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::HTTPHeaders;
using platform::Url;

RedirectKind redirectKind(int statusCode, const RequestOptions& options) {
    switch (statusCode) {
        case 301:
        case 302:
            return options.shouldUseRFC2616RedirectBehaviour ? RedirectKind::KeepsMethod
                                                             : RedirectKind::AsGet;
        case 303:
            return RedirectKind::AsGet;
        case 307:
            return RedirectKind::KeepsMethod;
        case 308:
            return options.followsPermanentRedirect ? RedirectKind::KeepsMethod
                                                    : RedirectKind::None;
        default:
            return RedirectKind::None;
    }
}

HTTPHeaders headersForRedirectAsGet(const HTTPHeaders& headers) {
    HTTPHeaders kept;
    for (const QString& name : {u"User-Agent"_s, u"Accept"_s})
        if (const auto value = headers.value(name))
            kept.set(name, *value);
    return kept;
}

HTTPHeaders headersForOtherOrigin(const HTTPHeaders& headers) {
    HTTPHeaders kept = headers;
    for (const QString& name : {u"Authorization"_s, u"Cookie"_s})
        kept.remove(name);
    return kept;
}

std::optional<Url> redirectTarget(const Url& url, const QString& location) {
    if (auto target = url.resolved(location))
        return target;
    const auto escaped = Url::parseLenient(location);
    return escaped ? url.resolved(escaped->absoluteString()) : std::nullopt;
}

bool isRequestable(const Url& url) {
    return (url.hasScheme("http") || url.hasScheme("https")) && !url.host().isEmpty();
}

}  // namespace http
