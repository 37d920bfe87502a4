#include "http/extras/progress_reporter.h"

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
    : state_(state), notifier_(notifier), progressLock_(progressLock) {}

void ProgressReporter::sendBegins() {
    const std::scoped_lock guard(progressLock_);
    if (state_.options.shouldResetUploadProgress) {
        const bool isAccurate = state_.options.showAccurateProgress;
        incrementUploadSizeBy(isAccurate ? static_cast<std::int64_t>(state_.postLength) : 1);
        notifier_.setUploadIndicator(0);
    }
    if (state_.options.shouldResetDownloadProgress && state_.partialDownloadSize == 0)
        notifier_.setDownloadIndicator(0);
}

void ProgressReporter::updateProgressIndicators() {
    if (state_.mainRequest != nullptr)
        return;
    if (!state_.options.showAccurateProgress && (!state_.isComplete() || isUpdated_))
        return;
    const std::scoped_lock guard(progressLock_);
    updateUploadProgress();
    updateDownloadProgress();
}

void ProgressReporter::updateUploadProgress() {
    const std::uint64_t sent = state_.totalBytesSent;
    const bool isWhole = sent == state_.postLength;
    if (state_.isCancelled() || sent == 0)
        return;
    // The first count is what the transport swallowed at once, nobody knows how fast.
    if (state_.uploadBufferSize == 0 && !isWhole) {
        state_.uploadBufferSize = sent;
        incrementUploadSizeBy(-static_cast<std::int64_t>(sent));
    }
    std::int64_t amount = 1;
    if (state_.options.showAccurateProgress) {
        if (!isWhole && state_.lastBytesSent == 0)
            return;
        amount = static_cast<std::int64_t>(sent - state_.lastBytesSent);
        if (amount == 0)
            return;
    } else {
        isUpdated_ = true;
    }
    notifier_.uploadProgressed(
        amount,
        fraction(sent - state_.uploadBufferSize, state_.postLength - state_.uploadBufferSize),
        state_.postLength);
}

void ProgressReporter::updateDownloadProgress() {
    if (!state_.responseHeaders || state_.isRedirected() ||
        (state_.contentLength == 0 && !state_.isComplete()))
        return;
    const std::uint64_t soFar = state_.totalBytesRead + state_.partialDownloadSize;
    const std::uint64_t total = state_.contentLength + state_.partialDownloadSize;
    std::int64_t amount = 1;
    if (state_.options.showAccurateProgress && state_.contentLength > 0) {
        amount = static_cast<std::int64_t>(soFar - state_.lastBytesRead);
        if (amount == 0)
            return;
    } else {
        isUpdated_ = true;
    }
    notifier_.downloadProgressed(amount, fraction(soFar, total), total);
    state_.lastBytesRead = soFar;
}

void ProgressReporter::removeUploadProgressSoFar() {
    const std::scoped_lock guard(progressLock_);
    notifier_.uploadProgressed(-static_cast<std::int64_t>(state_.totalBytesSent),
                               fraction(0, state_.postLength), state_.postLength);
}

void ProgressReporter::incrementDownloadSizeBy(std::int64_t amount) {
    notifier_.incrementDownloadSizeBy(amount);
}

void ProgressReporter::incrementUploadSizeBy(std::int64_t amount) {
    notifier_.incrementUploadSizeBy(amount);
}

}  // namespace http
