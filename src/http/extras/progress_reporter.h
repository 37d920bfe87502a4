#pragma once

#include <cstdint>
#include <mutex>

namespace http {

class RequestNotifier;
struct RequestState;

/// Decides what is reported of a request's progress, and when. Amounts are bytes, or a single 1
/// for the whole where the size is not known or not wanted.
///
/// Under the request's lock.
class ProgressReporter {
public:
    /// `progressLock`: of the process; held while reports are queued.
    ProgressReporter(RequestState& state, RequestNotifier& notifier,
                     std::recursive_mutex& progressLock);

    /// Announces the upload and sets the indicators back, as a send begins.
    void sendBegins();
    void updateProgressIndicators();
    void updateUploadProgress();
    void updateDownloadProgress();
    /// Takes back what was reported of a body that will be sent again.
    void removeUploadProgressSoFar();
    void incrementDownloadSizeBy(std::int64_t amount);
    void incrementUploadSizeBy(std::int64_t amount);

private:
    RequestState& state_;
    RequestNotifier& notifier_;
    std::recursive_mutex& progressLock_;
    bool isUpdated_ = false;  ///< The single 1 has been reported.
};

}  // namespace http
