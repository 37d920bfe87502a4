#pragma once

#include <memory>

#include "engine/workers/download_worker_prototype.h"
#include "engine/workers/partial_file.h"
#include "platform/base/timer.h"

namespace engine {

class FileSource;

/// The worker for files of this machine. A resumed part goes to a file of its own. The copy is
/// resumed only from a file that has not been changed since the part before was written.
class FileCopyWorker final : public DQDownloadWorkerPrototype {
public:
    [[nodiscard]] static Pointer make(const Context& context);
    ~FileCopyWorker() override;

    [[nodiscard]] bool truncateAtOffset(qint64 offset) override;

protected:
    [[nodiscard]] Pointer makeAnother() const override { return make(context()); }
    [[nodiscard]] bool startWithRequest(const WorkerRequest& request, const QString& range,
                                        platform::Seconds timeOut) override;
    void forgetTarget() override { closeTarget(); }

private:
    explicit FileCopyWorker(const Context& context);

    void answer();
    [[nodiscard]] qint64 answeredOffset() const;
    [[nodiscard]] std::optional<platform::Error> openTarget();
    void take(const QByteArray& data);
    void didWrite(qint64 count, const std::optional<platform::Error>& error);
    void readOn();
    void closeTarget();
    void stopWithError(const platform::Error& error);

    std::shared_ptr<FileSource> source_;
    /// Shared with the disk's thread, which writes. Null: not open.
    std::shared_ptr<PartialFile> target_;
    platform::Timer answering_;
    platform::Timer resting_;
};

}  // namespace engine
