#include "engine/lifecycle/failure_handler.h"

#include <algorithm>

#include "engine/acceleration/accelerator.h"
#include "engine/lifecycle/download.h"
#include "engine/lifecycle/response_handler.h"
#include "engine/workers/debug_log.h"
#include "http/http_request_error.h"
#include "platform/net/http_read_stream.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

/// Whether nothing came to go on with what is there, so that another address may do better. A disk
/// that takes nothing and a user who gives no password would say the same again.
bool isFailedResume(const Transfer::Workers& workers, const platform::Error& error) {
    if (error.domain == workerErrorDomain ||
        http::hasRequestErrorCode(error, http::HTTPRequestErrorCode::Authentication))
        return false;
    return std::none_of(workers.begin(), workers.end(),
                        [](const auto& worker) { return worker->hasReceivedBytes(); }) &&
           std::any_of(workers.begin(), workers.end(), [](const auto& worker) {
               return worker->fractionStartByte() + worker->resumeByteOffset() >= 1;
           });
}

}  // namespace

bool letPartWait(DQDownload& download, DQDownloadWorkerPrototype& worker,
                 std::optional<platform::Seconds> told) {
    const Transfer& transfer = download.transfer();
    const auto keep = worker.shared_from_this();
    if (parkRefusedWorker(download.transfer(), worker)) {
        download.host().serverDidRefuse(download, {worker, told});
        return true;
    }
    const bool isServed = std::any_of(transfer.workers().begin(), transfer.workers().end(),
                                      [](const auto& other) { return other->hasReceivedBytes(); });
    return (isServed || download.wasRefused()) && download.putOff(worker, told);
}

void handleFailure(DQDownload& download, DQDownloadWorkerPrototype& worker,
                   const platform::Error& error) {
    debugLog(download, [&] {
        return u"%1 failed with error: %2 (worker: %3)"_s.arg(download.description(), error.text,
                                                              worker.description());
    });
    if (error.is(workerErrorDomain, static_cast<int>(WorkerErrorCode::NotGiven))) {
        WorkerResponse answer;
        answer.statusCode = worker.answeredStatus();
        return keepPartialData(download, worker, answer);
    }
    Transfer& transfer = download.transfer();
    const bool mayWait = transfer.workers().size() >= 2 && worker.downloadedBytes() == 0 &&
                         worker.hasRange() && error.domain != workerErrorDomain;
    const bool isWrongPart =
        error.underlying &&
        error.underlying->is(platform::networkErrorDomain, platform::networkErrorWrongPart);
    // A connection that broke says nothing about how many the server serves.
    if (mayWait &&
        (parkRefusedWorker(transfer, worker) || (!isWrongPart && letPartWait(download, worker))))
        return;
    const bool isFailed = isFailedResume(transfer.workers(), error);
    // Asked again it would send the same part.
    if (isFailed && isWrongPart)
        return download.startOverBesidePartialData();
    if (isFailed && download.askOriginalAgain())
        return;
    download.noteKeptBytes();
    transfer.dropWorkers();
    download.interrupt(error);
}

}  // namespace engine
