#pragma once

#include <QVariantList>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/base/error.h"
#include "platform/base/run_loop.h"

namespace app {

/// Writes property lists to one file on a thread of its own. The latest one wins: what was given
/// while another was being written and has been replaced since is never written.
class ArchiveWriter {
public:
    /// Called on the loop's thread after each writing, with what went wrong if something did.
    using Written = std::function<void(const std::optional<platform::Error>&)>;
    /// Puts the list together, on the writer's thread.
    using Make = std::function<QVariantList()>;

    ArchiveWriter(QString path, platform::RunLoop& loop, Written written);
    /// Writes what waits. `written` is not called any more.
    ~ArchiveWriter();
    ArchiveWriter(const ArchiveWriter&) = delete;
    ArchiveWriter& operator=(const ArchiveWriter&) = delete;

    void write(QVariantList archive);
    void write(Make make);
    [[nodiscard]] bool isBusy() const;
    /// Returns when all is on disk, with what the last writing failed with.
    std::optional<platform::Error> finish();

private:
    void run();
    [[nodiscard]] std::optional<platform::Error> writeFile(const QVariantList& archive) const;

    const QString path_;
    platform::RunLoop& loop_;
    /// Shared with the calls posted, which may come when this object is gone.
    std::shared_ptr<Written> written_;

    mutable std::mutex lock_;  ///< Guards all that follows.
    std::condition_variable changed_;
    Make waiting_;  ///< Empty: nothing.
    std::optional<platform::Error> lastError_;
    bool isWriting_ = false;
    bool ends_ = false;

    std::thread thread_;
};

}  // namespace app
