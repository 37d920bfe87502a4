#pragma once

#include <QStringList>
#include <algorithm>
#include <utility>
#include <vector>

#include "engine/admission/download_manager.h"
#include "engine/record/download.h"

namespace support {

/// A queue in memory that writes down what the engine tells it. Installed for its life.
class MemoryManager final : public engine::DQDownloadManager {
public:
    MemoryManager() { engine::installMainController(this); }
    ~MemoryManager() override {
        queue.clear();
        engine::installMainController(nullptr);
    }

    engine::DownloadPtr add(const QString& url, bool addToQueue = false) {
        auto download = engine::DQDownload::downloadWithURLString(url, addToQueue);
        queue.push_back(download);
        engine::DQDownload::invalidateQueuedAndDownloadingDownloads();
        return download;
    }

    [[nodiscard]] const std::vector<engine::DownloadPtr>& downloads() const override {
        return queue;
    }
    [[nodiscard]] const QVariantList& specialCases() const override { return rules; }
    using DQDownloadManager::updateDownload;
    void updateDownload(engine::DQDownload& download, bool, bool forceVanish,
                        platform::Seconds) override {
        ++updates;
        if (forceVanish && removesVanished)
            removeDownload(download);
    }
    void updateDownloadListDisplay() override { ++displayUpdates; }
    void invalidateLongTermNumberOfQueuedOrDownloadingDownloads() override {}
    void decrementLongTermNumberOfQueuedOrDownloadingDownloads() override { ++decrements; }
    void disableAllDoneNotificationForDownload(engine::DQDownload&) override {}
    void removeDownload(engine::DQDownload& download) override {
        std::erase_if(queue, [&](const auto& other) { return other.get() == &download; });
    }
    void openURLsOfPage(const std::vector<platform::Url>& urls,
                        const QStringList& pageChain) override {
        for (const platform::Url& url : urls)
            opened.emplace_back(url.absoluteString(), pageChain.back());
        lastPageChain = pageChain;
    }

    std::vector<engine::DownloadPtr> queue;
    QVariantList rules;
    bool removesVanished = true;
    int updates = 0;
    int displayUpdates = 0;
    int decrements = 0;
    std::vector<std::pair<QString, QString>> opened;  ///< Address and referrer.
    QStringList lastPageChain;
};

}  // namespace support
