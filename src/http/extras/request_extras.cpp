#include "http/extras/request_extras.h"

#include "http/http_request.h"
#include "http/request/request_notifier.h"
#include "http/request/request_run.h"
#include "http/request/request_state.h"
#include "http/shared/shared_state.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::Error;

RequestExtras::RequestExtras(HTTPRequest& request, RequestParts parts, RequestRun& run)
    : parts_(parts),
      progress_(parts.state, parts.notifier, parts.shared.progressLock),
      file_(parts.state),
      cache_(request, parts, run, progress_) {}

void RequestExtras::messageBegins() {
    RequestState& state = parts_.state;
    if (state.requestMethod != u"GET"_s)
        state.options.downloadCache = nullptr;
    if (isProbe())
        state.mainRequest->internals().buildRequestHeaders();
    cache_.forgetAnswer();
}

std::optional<Error> RequestExtras::askForRest() {
    RequestState& state = parts_.state;
    const auto error = updatePartialDownloadSize(state);
    if (state.partialDownloadSize > 0)
        state.options.requestHeaders.set(u"Range"_s, rangeFrom(state.partialDownloadSize));
    return error;
}

void RequestExtras::sendIsPrepared() {
    // Where the next response goes on in its file is decided by that response.
    file_.close();
    if (parts_.state.lastBytesSent > 0)
        progress_.removeUploadProgressSoFar();
}

void RequestExtras::sendBegins() {
    if (!isProbe())
        progress_.sendBegins();
}

std::optional<Error> RequestExtras::sendIsRepeated() {
    RequestState& state = parts_.state;
    file_.close();
    const auto error = updatePartialDownloadSize(state);
    if (!error && state.partialDownloadSize > 0)
        state.request->headers.set(u"Range"_s, rangeFrom(state.partialDownloadSize));
    return error;
}

bool RequestExtras::takesBody() const {
    return !parts_.state.options.downloadDestinationPath.isEmpty();
}

bool RequestExtras::wantsBody() const {
    const RequestState& state = parts_.state;
    return !state.isRedirected() || !state.options.shouldRedirect ||
           !state.options.allowResumeForFileDownloads;
}

std::optional<Error> RequestExtras::write(const QByteArray& received, const QByteArray* inflated) {
    const FileOutput::Start start = file_.begin();
    if (start.discarded > 0)
        progress_.incrementDownloadSizeBy(-static_cast<std::int64_t>(start.discarded));
    if (start.error)
        return start.error;
    if (auto error = file_.write(received))
        return error;
    return inflated != nullptr ? file_.writeInflated(*inflated) : std::nullopt;
}

void RequestExtras::lengthIsKnown(std::optional<std::uint64_t> length) {
    RequestState& state = parts_.state;
    if (length) {
        progress_.incrementDownloadSizeBy(
            static_cast<std::int64_t>(state.contentLength + state.partialDownloadSize));
    } else {
        state.options.showAccurateProgress = false;
        progress_.incrementDownloadSizeBy(1);
    }
}

std::optional<Error> RequestExtras::responseEnds(const End& end) {
    const std::scoped_lock guard(parts_.shared.progressLock);
    progress_.updateProgressIndicators();
    const auto error = finishFile(end.isFinal);
    if (end.isWhole)
        cache_.store();
    return error;
}

std::optional<Error> RequestExtras::finishFile(bool isFinal) {
    if (!wantsBody()) {
        file_.close();
        return std::nullopt;
    }
    const bool isEmptyFile = parts_.state.totalBytesRead == 0 && isFinal && takesBody() &&
                             !parts_.notifier.isDataReceived();
    if (isEmptyFile)
        if (const auto error = write({}, nullptr))
            return error;
    return file_.finish();
}

bool RequestExtras::isProbe() const {
    return parts_.state.mainRequest != nullptr;
}

void RequestExtras::passOnFailure(const Error& error) {
    parts_.state.mainRequest->internals().failWithErrorOfProbe(error);
    parts_.notifier.clearReceivers();
}

}  // namespace http
