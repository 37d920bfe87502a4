#include "engine/workers/download_worker_prototype.h"

#include "engine/context.h"
#include "engine/record/extension_policy.h"
#include "engine/settings.h"
#include "engine/workers/debug_log.h"
#include "engine/workers/file_copy_worker.h"
#include "engine/workers/http_request_download_worker.h"
#include "platform/base/user_defaults.h"
#include "platform/net/headers_for_log.h"
#include "platform/net/status_codes.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
platform::Error makeWorkerError(WorkerErrorCode code, const QString& text,
                                const platform::Error* underlying) {
    return {workerErrorDomain, static_cast<int>(code), text,
            underlying ? std::make_shared<const platform::Error>(*underlying) : nullptr};
}

void WorkerRequest::goTo(const platform::Url& other) {
    if (!other.hasSameOrigin(url)) {
        requestMethod.clear();
        requestBody.clear();
        for (auto* headers : {&requestHeaders, &additionalRequestHeaders}) {
            if (*headers) {
                for (const QString& name : {u"Cookie"_s, u"Authorization"_s, u"Content-Type"_s})
                    (*headers)->remove(name);
            }
        }
    }
    url = other;
}

/// Only the second kind reads files of this machine, and only the first kind reads anything else.
DQDownloadWorkerPrototype::Pointer DQDownloadWorkerPrototype::downloadWorkerForURL(
    const Context& context, const platform::Url& url) {
    if (url.isEmpty())
        return nullptr;
    Pointer worker =
        url.isFile() ? FileCopyWorker::make(context) : DQHTTPRequestDownloadWorker::make(context);
    worker->request_.url = url;
    return worker;
}

DQDownloadWorkerPrototype::Pointer DQDownloadWorkerPrototype::downloadWorkerWithDownloadWorker(
    const Pointer& worker) {
    if (!worker)
        return nullptr;
    Pointer another = worker->makeAnother();
    another->_delegate = worker->_delegate;
    another->request_ = worker->request_;
    another->_targetPath = worker->_targetPath;
    return another;
}

QString DQDownloadWorkerPrototype::description() const {
    return u"<%1: %2>"_s
        .arg(resumesInSeparateFile() ? u"FileCopyWorker"_s : u"DQHTTPRequestDownloadWorker"_s)
        .arg(reinterpret_cast<quintptr>(this), 0, 16);
}

QString DQDownloadWorkerPrototype::targetPathByFallingBackToDelegate() {
    if (_targetPath.isEmpty() && _delegate)
        _targetPath = _delegate->targetPathForDownloadWorker(*this);
    return _targetPath;
}

void DQDownloadWorkerPrototype::setFinishedBefore(qint64 downloadedBytes) {
    _downloadedBytes = downloadedBytes;
    _status = DQDownloadWorkerStatusFinished;
}

platform::Seconds DQDownloadWorkerPrototype::now() const {
    return context_.monotonicNow();
}

std::optional<double> DQDownloadWorkerPrototype::rate() const {
    return _status == DQDownloadWorkerStatusRunning ? rateMeter_.rate(now(), _downloadedBytes)
                                                    : lastRate_;
}

bool DQDownloadWorkerPrototype::setBound(qint64 length) {
    if (length > 0 && receivedBytes() > length)
        return false;
    bound_ = length;
    return true;
}

QString DQDownloadWorkerPrototype::rangeHeader() const {
    const qint64 start = _fractionStartByte + _resumeByteOffset;
    if (_endByte >= 1)
        return u"bytes=%1-%2"_s.arg(start).arg(_endByte);
    return start >= 1 ? u"bytes=%1-"_s.arg(start) : QString();
}

bool DQDownloadWorkerPrototype::start() {
    const qint64 timeOut = context_.defaults.get(settings::requestTimeoutInterval);
    const bool isStarted =
        !request_.url.isEmpty() &&
        startWithRequest(request_, rangeHeader(), static_cast<platform::Seconds>(timeOut));
    rateMeter_.start(now());
    _status = isStarted ? DQDownloadWorkerStatusRunning : DQDownloadWorkerStatusFailed;
    return isStarted;
}

bool DQDownloadWorkerPrototype::truncateAtOffset(qint64 offset) {
    lastRate_ = rate();
    _downloadedBytes = offset - _resumeByteOffset;
    _status = DQDownloadWorkerStatusTruncated;
    finish();
    return true;
}

void DQDownloadWorkerPrototype::becomeWholeTransfer() {
    _fractionStartByte = _resumeByteOffset = _endByte = bound_ = 0;
    _targetPath.clear();
    place_ = {};
    forgetTarget();
}

void DQDownloadWorkerPrototype::processResponse(const WorkerResponse& response,
                                                qint64 expectedContentLength) {
    debugLog(*this, [&] {
        return u"<%1>\n- status code: %2\n- response headers: %3"_s.arg(
            response.url.absoluteString(), QString::number(response.statusCode),
            platform::headersForLog(response.headers.value_or(platform::HTTPHeaders())));
    });
    _expectedBytes = expectedContentLength;
    answeredStatus_ = response.statusCode;
    isServed_ = response.statusCode < 0 || platform::status::isSuccess(response.statusCode);
    WorkerResponse named = response;
    if (response.headers) {
        named.suggestedFilename = filenameWithExtensionPolicy(
            response.suggestedFilename,
            response.headers->value(u"Content-Type"_s).value_or(QString()),
            context_.defaults.get(settings::filenameExtensionPolicy));
    }
    if (_delegate)
        _delegate->downloadWorkerDidReceiveResponse(*this, named);
}

void DQDownloadWorkerPrototype::processDownloadedBytes(qint64 count) {
    _downloadedBytes += count;
    hasReceivedBytes_ = true;
    rateMeter_.note(now(), _downloadedBytes);
    if (_delegate)
        _delegate->downloadWorkerDidReceiveBytes(*this, count);
}

void DQDownloadWorkerPrototype::failWithError(const platform::Error& error) {
    _status = DQDownloadWorkerStatusFailed;
    if (_delegate)
        _delegate->downloadWorkerDidFail(*this, error);
}

void DQDownloadWorkerPrototype::finish() {
    if (_status != DQDownloadWorkerStatusTruncated) {
        lastRate_ = rate();
        _status = DQDownloadWorkerStatusFinished;
    }
    if (_delegate)
        _delegate->downloadWorkerDidFinish(*this);
}

/// One of several parts keeps its range and its file: no byte of it has come, and it must not
/// begin to write where another part is written.
void DQDownloadWorkerPrototype::reset() {
    _expectedBytes = _downloadedBytes = 0;
    _wholeBody.clear();
    if (_endByte == 0) {
        _fractionStartByte = _resumeByteOffset = bound_ = 0;
        _targetPath.clear();
        place_ = {};
    }
    if (_delegate)
        _delegate->resetProgressForDownloadWorker(*this);
}

}  // namespace engine
