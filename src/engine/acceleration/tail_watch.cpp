#include "engine/acceleration/tail_watch.h"

#include <algorithm>

#include "engine/acceleration/acceleration_settings.h"
#include "engine/acceleration/accelerator.h"
#include "engine/acceleration/tail_plan.h"
#include "engine/context.h"
#include "engine/record/download_record.h"

namespace engine {
namespace {

constexpr platform::Seconds watchInterval = 1;
constexpr platform::Seconds patience = 3;
/// What is over sooner is not worth the time that a new connection takes to become fast, unless
/// there is one to spare.
constexpr platform::Seconds leastTimeLeftForShared = 2;
constexpr platform::Seconds leastTimeLeftForFree = 0.5;

}  // namespace

TailWatch::TailWatch(Transfer& transfer, std::function<qint64()> connections)
    : transfer_(transfer),
      connections_(std::move(connections)),
      timer_(transfer.record().context().loop) {
    watch();
}

bool TailWatch::isWanted() const {
    const Transfer::Workers& workers = transfer_.workers();
    return workers.size() >= 2 && workers.front()->place().isShared() &&
           AccelerationSettings(transfer_.record().context().defaults).sharesSlowParts();
}

void TailWatch::workerDidFinish(const Transfer::Worker& worker) {
    if (!isConnectionFree() || shareSlowestPart(worker.rate()))
        return;
    // Too little to be shared can still take long.
    const Transfer::Workers& workers = transfer_.workers();
    for (std::size_t part = 0; part < workers.size(); ++part) {
        if (isCrawling(part, leastTimeLeftForFree)) {
            replaceWorker(transfer_, *workers[part]);
            return;
        }
    }
}

bool TailWatch::isConnectionFree() const {
    if (!isWanted())
        return false;
    const Transfer::Workers& workers = transfer_.workers();
    const bool doesAnyWait = std::any_of(workers.begin(), workers.end(), [](const auto& other) {
        return other->status() == DQDownloadWorkerStatusIdle;
    });
    const auto running = std::count_if(workers.begin(), workers.end(), [](const auto& other) {
        return other->status() == DQDownloadWorkerStatusRunning;
    });
    const AccelerationSettings settings(transfer_.record().context().defaults);
    return !doesAnyWait && running < std::min(settings.accelerationFactor(), connections_());
}

bool TailWatch::shareSlowestPart(std::optional<double> rate) {
    const AccelerationSettings settings(transfer_.record().context().defaults);
    const auto split =
        splitSlowestPart(transfer_.parts(), rate, settings.acceleratorFractionMinimumSize());
    return split && splitPart(transfer_, split->part, split->offset);
}

bool TailWatch::isCrawling(std::size_t part, platform::Seconds left) const {
    return !transfer_.workers()[part]->isReplacement() && crawls(transfer_.parts(), part, left);
}

void TailWatch::watch() {
    timer_.start(watchInterval, [this] {
        replaceCrawlingWorkers();
        // When it became free there may have been nothing that could be shared yet.
        if (isConnectionFree())
            static_cast<void>(shareSlowestPart(std::nullopt));
        watch();
    });
}

void TailWatch::replaceCrawlingWorkers() {
    if (!isWanted())
        return;
    const platform::Seconds now = transfer_.record().context().monotonicNow();
    std::unordered_map<const Transfer::Worker*, platform::Seconds> crawling;
    for (std::size_t part = 0; part < transfer_.workers().size(); ++part) {
        if (!isCrawling(part, leastTimeLeftForShared))
            continue;
        const Transfer::Worker* worker = transfer_.workers()[part].get();
        const auto known = crawlingSince_.find(worker);
        crawling[worker] = known == crawlingSince_.end() ? now : known->second;
    }
    crawlingSince_ = std::move(crawling);
    for (const auto& [worker, since] : crawlingSince_) {
        if (now - since >= patience) {
            replaceWorker(transfer_, *worker);
            crawlingSince_.erase(worker);
            return;
        }
    }
}

}  // namespace engine
