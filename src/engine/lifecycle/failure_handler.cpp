#include "engine/lifecycle/failure_handler.h"

#include <algorithm>

#include "engine/acceleration/accelerator.h"
#include "engine/lifecycle/download.h"
#include "engine/workers/debug_log.h"
#include "http/http_request_error.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

/// Whether the server would not go on, which is told by its having sent nothing. A disk that takes
/// nothing, a user who gives no password and a network that is away, as just after waking, say
/// nothing about the data that is there.
bool isFailedResume(const Transfer::Workers& workers, const platform::Error& error) {
    if (error.domain == workerErrorDomain ||
        http::hasRequestErrorCode(error, http::HTTPRequestErrorCode::Authentication) ||
        http::isFromTheWayToServer(error))
        return false;
    const auto isResumed = [](const auto& worker) { return worker->resumeByteOffset() >= 1; };
    qint64 sum = 0;
    for (const auto& worker : workers)
        sum += worker->downloadedBytes();
    return sum < 1 && std::any_of(workers.begin(), workers.end(), isResumed);
}

}  // namespace

void handleFailure(DQDownload& download, DQDownloadWorkerPrototype& worker,
                   const platform::Error& error) {
    debugLog(download, [&] {
        return u"%1 failed with error: %2 (worker: %3)"_s.arg(download.description(), error.text,
                                                              worker.description());
    });
    Transfer& transfer = download.transfer();
    const bool hasNotBegun = !transfer.isFirst(worker) && worker.downloadedBytes() == 0;
    if (hasNotBegun && error.domain != workerErrorDomain && parkRefusedWorker(transfer, worker))
        return;
    if (isFailedResume(transfer.workers(), error)) {
        download.startOverAfterFailedResume();
        return;
    }
    transfer.dropWorkers();
    download.interrupt(error);
}

}  // namespace engine
