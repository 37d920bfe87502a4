#pragma once

#include <QVariantList>
#include <functional>
#include <utility>
#include <vector>

#include "engine/environment.h"
#include "engine/queue/download_queue.h"
#include "engine/rules.h"
#include "platform/files/disks.h"

namespace support {

/// Whoever owns a queue in the engine's tests: writes down what is told, and takes out of the queue
/// what the user removed.
class MemoryQueue final : public engine::QueueOwner, public engine::Rules {
public:
    MemoryQueue(platform::UserDefaults& defaults, platform::RunLoop& loop, platform::Disks& disks,
                const engine::Environment& environment)
        : queue({defaults, loop, disks, environment, *this}, *this) {}

    engine::DownloadPtr add(const QString& url, bool addToQueue = false) {
        return queue.add(platform::Url::parse(url), addToQueue);
    }

    [[nodiscard]] const QVariantList& specialCases() const override { return rules; }
    void queueDidChange() override {}
    void downloadDidLeave(const engine::DQDownload&) override {}
    void statusDidChange(const engine::StatusChange& change) override {
        changes.emplace_back(change.after, change.cause);
        ++updates;
        if (engine::matchesStatusMask(change.after, engine::finishedStatuses) &&
            change.cause != engine::StatusCause::Removed)
            history.push_back(change.download.name());
    }
    void downloadDidChange(engine::DQDownload& download) override {
        ++updates;
        if (onChange)
            onChange(download);
    }
    void downloadWasRemoved(engine::DQDownload& download) override {
        if (removesVanished)
            queue.remove(download);
    }
    void batchDidEnd() override { ++batches; }
    void openURLsOfPage(const std::vector<platform::Url>& urls,
                        const QStringList& pageChain) override {
        for (const platform::Url& url : urls)
            opened.emplace_back(url.absoluteString(), pageChain.back());
        lastPageChain = pageChain;
    }
    void volumeIsMissing(engine::DQDownload& download) override {
        missingVolumes.push_back(download.name());
    }
    void fileWasNotThrownAway(const QString& path) override { notThrownAway.push_back(path); }

    QVariantList rules;
    std::function<void(engine::DQDownload&)> onChange;
    bool removesVanished = true;
    int updates = 0;
    int batches = 0;
    std::vector<std::pair<engine::DQDownloadStatus, engine::StatusCause>> changes;
    std::vector<QString> history;  ///< Names of the downloads that ended by themselves.
    std::vector<std::pair<QString, QString>> opened;  ///< Address and referrer.
    QStringList lastPageChain;
    std::vector<QString> missingVolumes, notThrownAway;

    engine::DownloadQueue queue;
};

}  // namespace support
