#include "engine/workers/http_request_download_worker.h"

#include "engine/context.h"
#include "engine/environment.h"
#include "engine/workers/debug_log.h"
#include "engine/workers/user_agent.h"
#include "http/http_request.h"
#include "links/names/content_disposition.h"
#include "links/names/file_names.h"
#include "platform/base/log.h"
#include "platform/base/run_loop.h"
#include "platform/base/user_defaults.h"
#include "platform/net/status_codes.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

/// Neither read from the cache nor write to it.
constexpr std::uint32_t cachePolicy = 3;

/// The body is stored as it comes, and in the part that we ask for: what a browser's captured
/// request says about these two would be answered by bytes that are not the file.
void removeForeignNegotiation(platform::HTTPHeaders& headers) {
    for (const QString& name : {u"Accept-Encoding"_s, u"Range"_s, u"If-Range"_s})
        headers.remove(name);
}

platform::HTTPHeaders headersFor(const WorkerRequest& request,
                                 const platform::UserDefaults& defaults) {
    platform::HTTPHeaders headers;
    const auto& given =
        request.requestHeaders ? request.requestHeaders : request.additionalRequestHeaders;
    if (given)
        headers = *given;
    removeForeignNegotiation(headers);
    if (!headers.contains(u"User-Agent"_s)) {
        const auto agent = userAgentForURL(request.url, defaults);
        if (agent)
            headers.set(u"User-Agent"_s, *agent);
    }
    if (!request.referer.isEmpty())
        headers.set(u"Referer"_s, request.referer);
    return headers;
}

void setRange(platform::HTTPHeaders& headers, const QString& range, const QString& validator) {
    if (range.isEmpty())
        return;
    headers.set(u"Range"_s, range);
    if (!validator.isEmpty())
        headers.set(u"If-Range"_s, validator);
}

/// It wants credentials without saying which (RFC 9110, 11.6.1 and 11.7.1), so that no other answer
/// can follow.
bool asksForNothing(const http::HTTPResponse& answer) {
    return (answer.statusCode == platform::status::unauthorized &&
            !answer.headers.contains(u"WWW-Authenticate"_s)) ||
           (answer.statusCode == platform::status::proxyAuthenticationRequired &&
            !answer.headers.contains(u"Proxy-Authenticate"_s));
}

/// With a transfer coding, "Content-Length" does not count (RFC 9112, 6.3). 0: unknown.
qint64 announcedLength(const platform::HTTPHeaders& headers) {
    if (headers.contains(u"Transfer-Encoding"_s))
        return 0;
    return headers.value(u"Content-Length"_s).value_or(QString()).toLongLong();
}

}  // namespace

DQDownloadWorkerPrototype::Pointer DQHTTPRequestDownloadWorker::make(const Context& context) {
    return Pointer(new DQHTTPRequestDownloadWorker(context));
}

DQHTTPRequestDownloadWorker::~DQHTTPRequestDownloadWorker() {
    cleanUpActiveRequest(true);
}

http::HTTPRequestDelegate::Capabilities DQHTTPRequestDownloadWorker::capabilities() const {
    return {true, true, true, true, true};
}

bool DQHTTPRequestDownloadWorker::startWithRequest(const WorkerRequest& request,
                                                   const QString& range,
                                                   platform::Seconds timeOut) {
    if (_downloadRequest)
        return false;
    _downloadRequest = http::HTTPRequest::requestWithURL(request.url);
    _downloadRequest->setDelegate(this);
    _downloadRequest->setUseKeychainPersistence(true);
    _downloadRequest->setUseSessionPersistence(true);
    _downloadRequest->setAllowCompressedResponse(false);
    _downloadRequest->setFollowsPermanentRedirect(true);
    _downloadRequest->setTimeOutSeconds(timeOut);
    if (request.bandwidth)
        _downloadRequest->setOwnBandwidth(request.bandwidth);
    _downloadRequest->setCachePolicy(cachePolicy);
    _downloadRequest->setDebugLogged(isDebugLogged());
    if (!request.requestMethod.isEmpty())
        _downloadRequest->setRequestMethod(request.requestMethod);
    if (!request.requestBody.isEmpty())
        _downloadRequest->setPostBody(request.requestBody);
    platform::HTTPHeaders headers = headersFor(request, context().defaults);
    debugLog(*this, [&] {
        return u"user agent: %1"_s.arg(headers.value(u"User-Agent"_s).value_or(u"-"_s));
    });
    setRange(headers, range, request.rangeValidator);
    _downloadRequest->setRequestHeaders(std::move(headers));
    _downloadRequest->startAsynchronous();
    return true;
}

void DQHTTPRequestDownloadWorker::setBandwidth(std::shared_ptr<http::BandwidthAccount> account) {
    if (_downloadRequest)
        _downloadRequest->setOwnBandwidth(account);
    DQDownloadWorkerPrototype::setBandwidth(std::move(account));
}

/// Perhaps because another's answer lets it in, too.
void DQHTTPRequestDownloadWorker::requestStarted(http::HTTPRequest& request) {
    context().environment.cancelAuthentication(request);
}

void DQHTTPRequestDownloadWorker::requestDidReceiveResponseHeaders(
    http::HTTPRequest&, const http::HTTPResponse& answer) {
    const auto keep = shared_from_this();
    statusCode_ = answer.statusCode;
    lacksChallenge_ = asksForNothing(answer);
    discardedBytes_ = 0;
    // Whatever sent the request again: what has been written belongs to another answer.
    if (downloadedBytes() > 0)
        return stopWithError(makeWorkerError(
            WorkerErrorCode::WrongPart,
            u"%1 was answered again in the middle of an answer"_s.arg(description())));
    WorkerResponse response;
    response.headers = answer.headers;
    response.url = answer.url;
    response.statusCode = answer.statusCode;
    response.suggestedFilename = links::filenameFromContentDisposition(
        answer.headers.value(u"Content-Disposition"_s).value_or(QString()));
    if (response.suggestedFilename.isEmpty())
        response.suggestedFilename =
            links::filename(response.url, links::plusSignsInNames(context().defaults));
    processResponse(response, announcedLength(answer.headers));
}

void DQHTTPRequestDownloadWorker::requestWillRedirectToURL(http::HTTPRequest& request,
                                                           const platform::Url& url) {
    const auto keep = shared_from_this();
    beginAgain();
    if (!_downloadRequest)
        return;
    // Most redirects lose these headers and some keep them, whether there still is a range or not.
    platform::HTTPHeaders headers = request.requestHeaders();
    headers.remove(u"Range"_s);
    headers.remove(u"If-Range"_s);
    setRange(headers, rangeHeader(), this->request().rangeValidator);
    request.setRequestHeaders(std::move(headers));
    request.redirectToURL(url);
}

bool DQHTTPRequestDownloadWorker::isStoringAnswer() const {
    return platform::status::isSuccess(statusCode_);
}

/// A partial file would only be made to be moved away again.
bool DQHTTPRequestDownloadWorker::isWholeFile(const QByteArray& data) const {
    return !_downloadFile && !hasRange() && downloadedBytes() == 0 &&
           data.size() == expectedBytes();
}

std::optional<platform::Error> DQHTTPRequestDownloadWorker::openTarget() {
    const QString path = targetPathByFallingBackToDelegate();
    if (path.isEmpty())
        return makeWorkerError(WorkerErrorCode::MissingTargetPath,
                               u"%1 missing target path"_s.arg(description()));
    auto file = std::make_shared<PartialFile>(context().disks, context().loop.clock());
    if (const auto error = file->open(place(), resumeByteOffset()))
        return makeWorkerError(WorkerErrorCode::CannotWrite,
                               u"%1 cannot write to intermediate file"_s.arg(description()),
                               &*error);
    static_cast<void>(file->setStoreLimit(storeLimit()));
    _downloadFile = std::move(file);
    return std::nullopt;
}

/// What would pass it comes to the main thread, which knows what to do about it.
qint64 DQHTTPRequestDownloadWorker::storeLimit() const {
    if (bound() > 0)
        return bound();
    return endByte() > 0 ? endByte() + 1 - fractionStartByte() : 0;
}

bool DQHTTPRequestDownloadWorker::setBound(qint64 length) {
    const qint64 before = bound();
    if (!DQDownloadWorkerPrototype::setBound(length))
        return false;
    if (!_downloadFile || _downloadFile->setStoreLimit(storeLimit()))
        return true;
    // It has stored more than has been told.
    static_cast<void>(DQDownloadWorkerPrototype::setBound(before));
    return false;
}

/// For good: the request's thread may still hold it.
void DQHTTPRequestDownloadWorker::closeFile() {
    isStoreOffered_ = false;
    if (const auto file = std::exchange(_downloadFile, nullptr))
        file->close();
}

bool DQHTTPRequestDownloadWorker::claimTargetPath() {
    return _downloadFile || !openTarget();
}

void DQHTTPRequestDownloadWorker::requestDidReceiveData(http::HTTPRequest& request,
                                                        const QByteArray& data) {
    if (status() != DQDownloadWorkerStatusRunning)
        return;
    const auto keep = shared_from_this();
    if (!isStoringAnswer())
        return discard(request, data.size());
    if (isWholeFile(data)) {
        setWholeBody(data);
        return processDownloadedBytes(data.size());
    }
    if (!_downloadFile) {
        if (const auto error = openTarget())
            return stopWithError(*error);
    }
    if (bound() > 0 && receivedBytes() + data.size() > bound())
        return takeUpToBound(request, data);
    const qint64 position = fractionStartByte() + receivedBytes();
    if (endByte() > 0 && position + data.size() > endByte() + 1)
        return stopWithError(
            makeWorkerError(WorkerErrorCode::WrongLength,
                            u"%1 received more than it asked for"_s.arg(description())));
    if (downloadedBytes() == 0)
        willStoreBytes();
    if (!std::exchange(isStoreOffered_, true) && request.setBodyStore(_downloadFile, data))
        return;
    if (const auto error = _downloadFile->write(data))
        return stopWithError(
            makeWorkerError(WorkerErrorCode::CannotWrite,
                            u"%1 cannot write to intermediate file"_s.arg(description()), &*error));
    processDownloadedBytes(data.size());
    stopAtBound();
}

void DQHTTPRequestDownloadWorker::takeUpToBound(http::HTTPRequest& request,
                                                const QByteArray& data) {
    const qint64 end = bound(), missing = end - receivedBytes();
    // What follows must not overtake what is taken here.
    isStoreOffered_ = true;
    if (missing > 0)
        requestDidReceiveData(request, data.first(missing));
    // Whoever heard of the bytes up to there may have let it go on.
    if (status() == DQDownloadWorkerStatusRunning && bound() != end)
        requestDidReceiveData(request, data.sliced(missing));
    else
        stopAtBound();
}

void DQHTTPRequestDownloadWorker::stopAtBound() {
    if (status() == DQDownloadWorkerStatusRunning && bound() > 0 && receivedBytes() >= bound() &&
        !truncateAtOffset(bound()))
        stopWithError(makeWorkerError(WorkerErrorCode::WrongLength,
                                      u"%1 cannot stop at its end"_s.arg(description())));
}

/// An error page is read to its end, so that its connection can be used again, unless that is far.
void DQHTTPRequestDownloadWorker::discard(http::HTTPRequest& request, qint64 count) {
    constexpr qint64 mostDiscarded = 64LL * 1024;
    // Another may follow a redirect or a challenge, whose bodies the request bounds itself.
    const bool isFailure = statusCode_ >= 400 && statusCode_ != platform::status::unauthorized &&
                           statusCode_ != platform::status::proxyAuthenticationRequired;
    discardedBytes_ += count;
    if (discardedBytes_ <= mostDiscarded || !(isFailure || lacksChallenge_))
        return;
    request.clearDelegatesAndCancel();
    requestFinished(request);
}

void DQHTTPRequestDownloadWorker::requestDidStoreData(http::HTTPRequest&, std::int64_t count) {
    const auto keep = shared_from_this();
    if (status() != DQDownloadWorkerStatusRunning)
        return;
    processDownloadedBytes(count);
    stopAtBound();
}

void DQHTTPRequestDownloadWorker::requestFinished(http::HTTPRequest&) {
    const auto keep = shared_from_this();
    cleanUpActiveRequest(false);
    if (isStoringAnswer() && expectedBytes() > 0 && downloadedBytes() != expectedBytes())
        return failWithError(
            makeWorkerError(WorkerErrorCode::WrongLength,
                            u"%1 received %2 bytes in place of the announced %3"_s.arg(
                                description(), QString::number(downloadedBytes()),
                                QString::number(expectedBytes()))));
    // What is on disk from before must not pass for the file.
    if (!isStoringAnswer() && hasRange())
        return failWithError(makeWorkerError(WorkerErrorCode::NotGiven,
                                             u"%1 was not given its part"_s.arg(description())));
    finish();
}

void DQHTTPRequestDownloadWorker::requestFailed(http::HTTPRequest& request) {
    // The client can only say that it has nothing to answer; the status says more.
    if (lacksChallenge_)
        return requestFinished(request);
    const auto keep = shared_from_this();
    const platform::Error error = request.error().value_or(platform::Error{});
    cleanUpActiveRequest(false);
    failWithError(error);
}

void DQHTTPRequestDownloadWorker::authenticationNeededForRequest(http::HTTPRequest& request) {
    acquireAuthentication(request);
}

void DQHTTPRequestDownloadWorker::proxyAuthenticationNeededForRequest(http::HTTPRequest& request) {
    acquireAuthentication(request);
}

/// The request is sent again with its range: what is on disk stays for the part to go on from.
void DQHTTPRequestDownloadWorker::beginAgain() {
    if (!hasRange())
        reset();
}

void DQHTTPRequestDownloadWorker::acquireAuthentication(http::HTTPRequest& request) {
    const auto keep = shared_from_this();
    beginAgain();
    if (_downloadRequest)
        context().environment.acquireAuthentication(request);
}

void DQHTTPRequestDownloadWorker::reset() {
    closeFile();
    DQDownloadWorkerPrototype::reset();
}

bool DQHTTPRequestDownloadWorker::truncateAtOffset(qint64 offset) {
    if (!_downloadFile || !_downloadFile->truncate(offset))
        return false;
    const auto keep = shared_from_this();
    cleanUpActiveRequest(true);
    return DQDownloadWorkerPrototype::truncateAtOffset(offset);
}

void DQHTTPRequestDownloadWorker::stopWithError(const platform::Error& error) {
    cleanUpActiveRequest(true);
    failWithError(error);
}

void DQHTTPRequestDownloadWorker::cleanUpActiveRequest(bool mayBeLive) {
    if (_downloadRequest)
        context().environment.cancelAuthentication(*_downloadRequest);
    if (_downloadRequest && mayBeLive)
        _downloadRequest->clearDelegatesAndCancel();
    _downloadRequest.reset();
    closeFile();
}

}  // namespace engine
