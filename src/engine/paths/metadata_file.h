#pragma once

#include <QString>
#include <QVariantMap>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace platform {
class Disks;
}

namespace engine {

/// "Archive.orlopinfo" of one container: what belongs to the partial data in it. Written off the
/// main thread, which never waits for the disk; of several versions that come while one is being
/// written only the last one is.
class MetadataFile : public std::enable_shared_from_this<MetadataFile> {
public:
    /// Not what it says already. Main thread.
    void write(platform::Disks& disks, const QString& container, const QVariantMap& archive);
    /// Before the first byte that it belongs to is stored, so that a kill at any moment leaves no
    /// data behind of which nobody knows. It may be lost if the power fails; a `write` is to
    /// follow.
    static void writeAtOnce(const QString& container, const QVariantMap& archive);
    /// Forgets what was to be written and what was, and calls `remove`, which deletes the
    /// container: at once, or on the thread that is just writing into it. Main thread.
    void discard(std::function<void()> remove);
    /// Returns when nothing is being written any more, nor going to be before the next `write`. Not
    /// on the main thread.
    void settle();

private:
    struct Version {
        QString container;
        QVariantMap archive;
    };

    void work();
    [[nodiscard]] bool takeNext(Version& next);

    Version written_;  ///< Of the main thread, as far as was asked for.
    /// Something that was asked for is not there.
    std::atomic<bool> isOutdated_ = false;
    std::mutex lock_;  ///< Guards all below.
    std::condition_variable isIdle_;
    bool isWriting_ = false;
    bool hasNext_ = false;
    Version next_;
    std::vector<std::function<void()>> removals_;
};

}  // namespace engine
