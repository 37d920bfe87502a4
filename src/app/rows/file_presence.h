#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <unordered_map>

#include "platform/base/clock.h"

namespace engine {
class DQDownload;
class DownloadQueue;
struct Context;
}  // namespace engine

namespace app {

/// Whether finished files are still where they were put, as known without asking a disk: what was
/// found when it was last looked for, in the background. Main thread.
class FilePresence {
public:
    /// `changed` is called for a download about which something new was found out.
    FilePresence(const engine::Context& context, std::function<void(engine::DQDownload&)> changed);
    ~FilePresence();
    FilePresence(const FilePresence&) = delete;
    FilePresence& operator=(const FilePresence&) = delete;

    /// What is asked for often is looked at every few seconds. Before the first look it is there.
    /// False also for a download without a file.
    [[nodiscard]] bool isThere(engine::DQDownload& download);
    /// Nothing more is remembered of it.
    void forget(const engine::DQDownload& download) { known_.erase(&download); }

private:
    struct Known {
        QString path;
        bool isThere = true;
        bool isBeingLookedFor = false;
        platform::Seconds lookedAt = 0;
    };
    using Table = std::unordered_map<const engine::DQDownload*, Known>;

    void look(engine::DQDownload& download, Known& known);
    void didLook(engine::DQDownload& download, const QString& path, bool isThere);

    const engine::Context& context_;
    const std::function<void(engine::DQDownload&)> changed_;
    Table known_;
    /// Goes with this, so that answers that come later find nobody.
    std::shared_ptr<FilePresence*> self_;
};

}  // namespace app
