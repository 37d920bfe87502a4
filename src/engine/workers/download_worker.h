#pragma once

#include <memory>

#include "engine/workers/download_worker_prototype.h"
#include "engine/workers/partial_file.h"

namespace engine {

class FileSource;

/// The worker for files of this machine. A resumed part goes to a file of its own. The copy is
/// resumed only from a file that has not been changed since the part before was written.
class DQDownloadWorker final : public DQDownloadWorkerPrototype {
public:
    [[nodiscard]] static Pointer make();
    ~DQDownloadWorker() override;

    [[nodiscard]] bool truncateAtOffset(qint64 offset) override;

protected:
    [[nodiscard]] Pointer makeAnother() const override { return make(); }
    [[nodiscard]] bool startWithRequest(const WorkerRequest& request, const QString& range,
                                        platform::Seconds timeOut) override;
    void forgetTarget() override { target_.close(); }

private:
    DQDownloadWorker() = default;

    void answer();
    [[nodiscard]] qint64 answeredOffset() const;
    [[nodiscard]] std::optional<platform::Error> openTarget();
    void take(const QByteArray& data);
    void stopWithError(const platform::Error& error);

    std::shared_ptr<FileSource> _download;
    PartialFile target_;
};

}  // namespace engine
