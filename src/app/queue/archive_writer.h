#pragma once

#include <QByteArray>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/base/error.h"
#include "platform/base/run_loop.h"

namespace platform {
class Disk;
class Disks;
}  // namespace platform

namespace app {

/// Writes property lists to one file, off the main thread: arrays, whose elements come as texts
/// (`platform::propertyListElement`). The latest one wins: what was given while another was being
/// written and has been replaced since is never written. Main thread.
class ArchiveWriter {
public:
    /// Called on the loop's thread after each writing, with what went wrong if something did.
    using Written = std::function<void(const std::optional<platform::Error>&)>;
    using Elements = std::vector<QByteArray>;
    /// Puts the list together, on the thread that writes.
    using Make = std::function<Elements()>;

    /// `disks` and its loop outlive the writer.
    ArchiveWriter(QString path, platform::Disks& disks, platform::RunLoop& loop, Written written);
    /// Writes what waits. `written` is not called any more.
    ~ArchiveWriter();
    ArchiveWriter(const ArchiveWriter&) = delete;
    ArchiveWriter& operator=(const ArchiveWriter&) = delete;

    void write(Elements elements);
    void write(Make make);
    [[nodiscard]] bool isBusy() const;
    /// Returns when all is on disk, with what the last writing failed with: ETIMEDOUT if the disk
    /// has not answered for some seconds, which is waited for only once.
    std::optional<platform::Error> finish();

private:
    struct State;

    platform::Disk& disk_;
    /// Shared with the thread that writes, which may outlive this object.
    std::shared_ptr<State> state_;
};

}  // namespace app
