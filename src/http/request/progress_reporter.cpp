#include "http/request/progress_reporter.h"

#include "http/request/request_notifier.h"
#include "http/request/request_state.h"

namespace http {

namespace {

double fraction(std::uint64_t progress, std::uint64_t total) {
    return static_cast<double>(progress) / static_cast<double>(total);
}

}  // namespace

ProgressReporter::ProgressReporter(RequestState& state, RequestNotifier& notifier,
                                   std::recursive_mutex& progressLock)
    : _state(state), _notifier(notifier), _progressLock(progressLock) {}

void ProgressReporter::sendBegins() {
    const std::scoped_lock guard(_progressLock);
    if (_state.options.shouldResetUploadProgress) {
        const bool isAccurate = _state.options.showAccurateProgress;
        incrementUploadSizeBy(isAccurate ? static_cast<std::int64_t>(_state.postLength) : 1);
        _notifier.setUploadIndicator(0);
    }
    if (_state.options.shouldResetDownloadProgress && _state.partialDownloadSize == 0)
        _notifier.setDownloadIndicator(0);
}

void ProgressReporter::updateProgressIndicators() {
    if (_state.mainRequest != nullptr)
        return;
    if (!_state.options.showAccurateProgress && (!_state.complete || _state.updatedProgress))
        return;
    const std::scoped_lock guard(_progressLock);
    updateUploadProgress();
    updateDownloadProgress();
}

void ProgressReporter::updateUploadProgress() {
    const std::uint64_t sent = _state.totalBytesSent;
    const bool isWhole = sent == _state.postLength;
    if (_state.cancelled || sent == 0)
        return;
    // The first count is what the transport swallowed at once, nobody knows how fast.
    if (_state.uploadBufferSize == 0 && !isWhole) {
        _state.uploadBufferSize = sent;
        incrementUploadSizeBy(-static_cast<std::int64_t>(sent));
    }
    std::int64_t amount = 1;
    if (_state.options.showAccurateProgress) {
        if (!isWhole && _state.lastBytesSent == 0)
            return;
        amount = static_cast<std::int64_t>(sent - _state.lastBytesSent);
        if (amount == 0)
            return;
    } else {
        _state.updatedProgress = true;
    }
    _notifier.uploadProgressed(
        amount,
        fraction(sent - _state.uploadBufferSize, _state.postLength - _state.uploadBufferSize),
        _state.postLength);
}

void ProgressReporter::updateDownloadProgress() {
    if (!_state.responseHeaders || _state.needsRedirect ||
        (_state.contentLength == 0 && !_state.complete))
        return;
    const std::uint64_t soFar = _state.totalBytesRead + _state.partialDownloadSize;
    const std::uint64_t total = _state.contentLength + _state.partialDownloadSize;
    std::int64_t amount = 1;
    if (_state.options.showAccurateProgress && _state.contentLength > 0) {
        amount = static_cast<std::int64_t>(soFar - _state.lastBytesRead);
        if (amount == 0)
            return;
    } else {
        _state.updatedProgress = true;
    }
    _notifier.downloadProgressed(amount, fraction(soFar, total), total);
    _state.lastBytesRead = soFar;
}

void ProgressReporter::removeUploadProgressSoFar() {
    const std::scoped_lock guard(_progressLock);
    _notifier.uploadProgressed(-static_cast<std::int64_t>(_state.totalBytesSent),
                               fraction(0, _state.postLength), _state.postLength);
}

void ProgressReporter::incrementDownloadSizeBy(std::int64_t amount) {
    _notifier.incrementDownloadSizeBy(amount);
}

void ProgressReporter::incrementUploadSizeBy(std::int64_t amount) {
    _notifier.incrementUploadSizeBy(amount);
}

}  // namespace http
