#include "http/extras/request_cache.h"

#include "http/extras/cache/response_cache.h"
#include "http/extras/progress_reporter.h"
#include "http/http_request.h"
#include "http/request/connection_lease.h"
#include "http/request/request_run.h"
#include "http/request/request_state.h"
#include "http/request/response_reader.h"
#include "http/request/status_watch.h"

namespace http {

using namespace Qt::Literals::StringLiterals;

RequestCache::RequestCache(const HTTPRequest& request, RequestParts parts, RequestRun& run,
                           ProgressReporter& progress)
    : request_(request), parts_(parts), run_(run), progress_(progress) {}

bool RequestCache::answerBeforeSend() {
    const auto cache = parts_.state.options.downloadCache;
    if (cache == nullptr)
        return false;
    if (parts_.state.options.cachePolicy == cachePolicyDefault)
        parts_.state.options.cachePolicy = cache->defaultCachePolicy();
    if (cache->canUseCachedDataForRequest(request_)) {
        useDataFromCache();
        return true;
    }
    addConditions();
    return false;
}

void RequestCache::addConditions() {
    RequestState& state = parts_.state;
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
    const auto cache = parts_.state.options.downloadCache;
    if (cache == nullptr || !cache->canUseCachedDataForRequest(request_))
        return false;
    cache->updateExpiryForRequest(request_, parts_.state.options.secondsToCache);
    useDataFromCache();
    return true;
}

bool RequestCache::answerFailure() {
    const RequestState& state = parts_.state;
    const auto cache = state.options.downloadCache;
    if (cache == nullptr ||
        (state.options.cachePolicy & cachePolicyFallbackToCacheIfLoadFails) == 0 ||
        !cache->canUseCachedDataForRequest(request_))
        return false;
    useDataFromCache();
    return true;
}

void RequestCache::store() {
    const RequestState& state = parts_.state;
    if (state.options.downloadCache != nullptr && !hasAnswered_)
        state.options.downloadCache->storeResponseForRequest(request_,
                                                             state.options.secondsToCache);
}

void RequestCache::takeCachedResponse() {
    RequestState& state = parts_.state;
    ResponseCache& cache = *state.options.downloadCache;
    const auto headers = cache.cachedResponseHeadersForURL(state.url);
    const QString path = cache.pathToCachedResponseDataForURL(state.url);
    if (headers && !path.isEmpty()) {
        state.responseStatusCode = headers->value(cacheStatusCodeField).value_or(QString()).toInt();
        hasAnswered_ = true;
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
    RequestState& state = parts_.state;
    // A send that is answered before its end leaves a connection that nobody can use.
    if (state.phase == RequestPhase::Answered)
        parts_.connection.endUse();
    else
        parts_.connection.remove();
    takeCachedResponse();
    run_.statusWatch().stop();
    const bool redirects = run_.reader().takeCachedHeaders();
    state.phase = RequestPhase::Answered;
    if (redirects) {
        run_.followRedirectLater();
        return;
    }
    if (state.redirectCount == 0)
        state.originalURL = state.url;
    progress_.updateProgressIndicators();
    run_.requestFinished();
    run_.markAsFinished();
}

}  // namespace http
