#include "http/request/request_cache.h"

#include "http/cache/response_cache.h"
#include "http/http_request.h"
#include "http/request/connection_lease.h"
#include "http/request/progress_reporter.h"
#include "http/request/request_run.h"
#include "http/request/request_state.h"
#include "http/request/response_reader.h"
#include "http/request/status_watch.h"

namespace http {

using namespace Qt::Literals::StringLiterals;

RequestCache::RequestCache(const HTTPRequest& request, RequestParts parts, RequestRun& run)
    : _request(request), _parts(parts), _run(run) {}

bool RequestCache::answerBeforeSend() {
    const auto cache = _parts.state.options.downloadCache;
    if (cache == nullptr)
        return false;
    if (_parts.state.options.cachePolicy == cachePolicyDefault)
        _parts.state.options.cachePolicy = cache->defaultCachePolicy();
    if (cache->canUseCachedDataForRequest(_request)) {
        useDataFromCache();
        return true;
    }
    addConditions();
    return false;
}

void RequestCache::addConditions() {
    RequestState& state = _parts.state;
    constexpr std::uint32_t asks =
        cachePolicyAskServerIfModifiedWhenStale | cachePolicyAskServerIfModified;
    if ((state.options.cachePolicy & asks) == 0)
        return;
    const auto cached = state.options.downloadCache->cachedResponseHeadersForURL(state.url);
    if (!cached)
        return;
    if (const auto tag = cached->value(u"Etag"_s))
        state.options.requestHeaders.set(u"If-None-Match"_s, *tag);
    if (const auto date = cached->value(u"Last-Modified"_s))
        state.options.requestHeaders.set(u"If-Modified-Since"_s, *date);
}

bool RequestCache::answerAfterHead() {
    const auto cache = _parts.state.options.downloadCache;
    if (cache == nullptr || !cache->canUseCachedDataForRequest(_request))
        return false;
    cache->updateExpiryForRequest(_request, _parts.state.options.secondsToCache);
    useDataFromCache();
    return true;
}

bool RequestCache::answerFailure() {
    const RequestState& state = _parts.state;
    const auto cache = state.options.downloadCache;
    if (cache == nullptr ||
        (state.options.cachePolicy & cachePolicyFallbackToCacheIfLoadFails) == 0 ||
        !cache->canUseCachedDataForRequest(_request))
        return false;
    useDataFromCache();
    return true;
}

void RequestCache::store() {
    const RequestState& state = _parts.state;
    if (state.options.downloadCache != nullptr && !state.didUseCachedResponse)
        state.options.downloadCache->storeResponseForRequest(_request,
                                                             state.options.secondsToCache);
}

void RequestCache::takeCachedResponse() {
    RequestState& state = _parts.state;
    ResponseCache& cache = *state.options.downloadCache;
    const auto headers = cache.cachedResponseHeadersForURL(state.url);
    const QString path = cache.pathToCachedResponseDataForURL(state.url);
    if (headers && !path.isEmpty()) {
        state.responseStatusCode = headers->value(cacheStatusCodeField).value_or(QString()).toInt();
        state.didUseCachedResponse = true;
        state.responseHeaders = headers;
        if (state.options.downloadDestinationPath.isEmpty())
            state.rawResponseData =
                cache.cachedResponseDataForURL(state.url).value_or(QByteArray());
        else
            state.options.downloadDestinationPath = path;
    }
    state.contentLength =
        state.responseHeader(u"Content-Length"_s).value_or(QString()).toULongLong();
    state.totalBytesRead = state.contentLength;
}

void RequestCache::useDataFromCache() {
    RequestState& state = _parts.state;
    // A send that is answered before its end leaves a connection that nobody can use.
    if (state.downloadComplete)
        _parts.connection.endUse();
    else
        _parts.connection.remove();
    takeCachedResponse();
    _run.statusWatch().stop();
    const bool redirects = _run.reader().takeCachedHeaders();
    state.complete = true;
    state.downloadComplete = true;
    if (redirects) {
        _run.followRedirectLater();
        return;
    }
    if (state.redirectCount == 0)
        state.originalURL = state.url;
    _parts.progress.updateProgressIndicators();
    _run.requestFinished();
    _run.markAsFinished();
}

}  // namespace http
