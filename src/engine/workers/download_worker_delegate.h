#pragma once

#include <QString>
#include <optional>

#include "platform/base/error.h"
#include "platform/net/http_message.h"
#include "platform/net/url.h"

namespace engine {

class DQDownloadWorkerPrototype;

/// What a worker learnt from the head of an answer.
struct WorkerResponse {
    /// A local file has a validator and nothing else. Nothing: the transfer has no headers.
    std::optional<platform::HTTPHeaders> headers;
    /// The address that answered.
    platform::Url url;
    /// -1: the transfer has no such thing.
    qint64 statusCode = -1;
    /// One path component, or empty.
    QString suggestedFilename;
};

/// Whom a worker reports to. Main thread. Every call may drop the worker, and may end the life of
/// the delegate.
class DQDownloadWorkerDelegate {
public:
    virtual ~DQDownloadWorkerDelegate() = default;

    /// Whether debug lines about it are wanted even while debug logging is off.
    [[nodiscard]] virtual bool isDebugLogged() const { return false; }

    /// Where to write; asked for only while the worker has no path and needs one. Empty: nowhere.
    [[nodiscard]] virtual QString targetPathForDownloadWorker(
        const DQDownloadWorkerPrototype& worker) = 0;
    /// The worker begins again: a redirect or an authentication attempt.
    virtual void resetProgressForDownloadWorker(DQDownloadWorkerPrototype& worker) = 0;
    /// Can come several times from one worker.
    virtual void downloadWorkerDidReceiveResponse(DQDownloadWorkerPrototype& worker,
                                                  const WorkerResponse& response) = 0;
    /// Its file is open, and its first bytes are going to be stored there.
    virtual void downloadWorkerWillStoreBytes(DQDownloadWorkerPrototype& worker) = 0;
    /// The bytes are in the file, and in the worker's `downloadedBytes`.
    virtual void downloadWorkerDidReceiveBytes(DQDownloadWorkerPrototype& worker, qint64 count) = 0;
    /// The worker's status is Failed already.
    virtual void downloadWorkerDidFail(DQDownloadWorkerPrototype& worker,
                                       const platform::Error& error) = 0;
    /// The worker's status is Truncated or Finished already.
    virtual void downloadWorkerDidFinish(DQDownloadWorkerPrototype& worker) = 0;
};

}  // namespace engine
