#include "app/queue/removed_downloads.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "engine/queue/queue_admission.h"
#include "engine/record/user_settings.h"
#include "engine/settings.h"
#include "links/format/byte_counts.h"
#include "links/text/localization.h"
#include "platform/base/user_defaults.h"

namespace app {

namespace keys = engine::keys;

namespace {

/// Nobody goes back further, and what is kept takes room on the disk.
constexpr std::size_t mostSteps = 100;
/// As long as a window offers to undo it.
constexpr platform::Seconds freshTime = 10;

qint64 keptBytes(const engine::DQDownload& download) {
    return download.isWithdrawn() && download.holdsPartialData()
               ? download.userSettings().value(keys::keptBytes).toLongLong()
               : 0;
}

}  // namespace

/// One removal.
struct RemovedDownloads::Step {
    std::vector<engine::DownloadQueue::Place> places;
    QVariantList archives;
    QString sentence;
    std::function<void()> putBack;

    void giveUp() const {
        for (const auto& [download, index] : places) {
            if (download->isWithdrawn()) {
                download->giveUpData();
            }
        }
    }
};

RemovedDownloads::RemovedDownloads(Surroundings surroundings)
    : surroundings_(std::move(surroundings)) {}

RemovedDownloads::~RemovedDownloads() = default;

void RemovedDownloads::note(const engine::DownloadPtr& download) {
    noted_.push_back(download);
}

void RemovedDownloads::endStep() {
    if (noted_.empty()) {
        return;
    }
    std::unordered_set<const engine::DQDownload*> leaving;
    for (const engine::DownloadPtr& download : std::exchange(noted_, {})) {
        leaving.insert(download.get());
    }
    Step step;
    std::size_t index = 0;
    for (const engine::DownloadPtr& download : surroundings_.queue.downloads()) {
        if (leaving.contains(download.get())) {
            step.places.push_back({download, index++});
        } else if (!surroundings_.isLeaving(*download)) {
            ++index;
        }
    }
    push(std::move(step));
}

void RemovedDownloads::takeIn(const std::vector<engine::DownloadQueue::Place>& removed) {
    if (removed.empty()) {
        return;
    }
    for (const auto& [download, index] : removed) {
        surroundings_.queue.remove(*download);
        download->withdraw();
    }
    Step step;
    step.places = removed;
    push(std::move(step));
}

void RemovedDownloads::add(const QString& sentence, std::function<void()> putBack) {
    Step step;
    step.sentence = sentence;
    step.putBack = std::move(putBack);
    push(std::move(step));
}

void RemovedDownloads::push(Step step) {
    const bool storesMetadata =
        surroundings_.queue.context().defaults.get(engine::settings::storeMetadataLocally);
    for (const auto& [download, index] : step.places) {
        if (!download->isWithdrawn() || !download->holdsPartialData()) {
            continue;
        }
        // The container says it too, should the queue's file be lost: paused, not to be run.
        QVariantMap archive = download->userSettingsArchiveWithPausedStatus(true, storesMetadata);
        if (archive.contains(keys::resumePath)) {
            archive.insert(keys::removedFrom, static_cast<qint64>(index));
            step.archives.append(archive);
        }
    }
    if (step.sentence.isEmpty()) {
        step.sentence = sentence(step);
    }
    steps_.push_back(std::move(step));
    if (steps_.size() > mostSteps) {
        steps_.front().giveUp();
        steps_.pop_front();
    }
    fresh_ = surroundings_.queue.context().monotonicNow() + freshTime;
    surroundings_.told(last());
}

QString RemovedDownloads::last() const {
    return steps_.empty() ? QString() : steps_.back().sentence;
}

platform::Seconds RemovedDownloads::freshFor() const {
    return steps_.empty() ? 0
                          : std::max(fresh_ - surroundings_.queue.context().monotonicNow(), 0.0);
}

QString RemovedDownloads::sentence(const Step& step) const {
    qint64 kept = 0;
    for (const auto& [download, index] : step.places) {
        kept += keptBytes(*download);
    }
    const QString size = links::fileSizeText(kept);
    if (step.places.size() == 1) {
        const QString name = step.places.front().download->displayName();
        return kept > 0
                   ? links::filledFormat(links::localized("Removed %@ (%@ kept)"), {name, size})
                   : links::filledFormat(links::localized("Removed %@"), {name});
    }
    const QString count = QString::number(step.places.size());
    return kept > 0 ? links::filledFormat(links::localized("Removed %@ downloads (%@ kept)"),
                                          {count, size})
                    : links::filledFormat(links::localized("Removed %@ downloads"), {count});
}

engine::Downloads RemovedDownloads::undo() {
    if (steps_.empty()) {
        return {};
    }
    const Step step = std::move(steps_.back());
    steps_.pop_back();
    surroundings_.told({});
    if (step.putBack) {
        step.putBack();
    }
    engine::Downloads back;
    std::vector<engine::DownloadQueue::Place> gone;
    for (const engine::DownloadQueue::Place& place : step.places) {
        back.push_back(place.download);
        if (surroundings_.queue.contains(*place.download)) {
            surroundings_.keepRow(*place.download);
        } else {
            gone.push_back(place);
        }
        place.download->takeBack();
    }
    surroundings_.queue.putBack(gone, [this](const engine::DQDownload& download) {
        return !surroundings_.isLeaving(download);
    });
    surroundings_.queue.admission().startEligibleQueuedDownloadsWithTimer();
    return back;
}

void RemovedDownloads::giveUp() {
    for (const Step& step : std::exchange(steps_, {})) {
        step.giveUp();
    }
    surroundings_.told({});
}

QVariantList RemovedDownloads::archives() const {
    QVariantList all;
    for (const Step& step : steps_) {
        all += step.archives;
    }
    return all;
}

}  // namespace app
