#include "scripting/hand_overs/hand_overs.h"

#include <algorithm>
#include <utility>

#include "app/settings.h"
#include "engine/record/user_settings.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/base/user_defaults.h"
#include "scripting/hand_overs/renewal.h"

namespace scripting {

namespace keys = engine::keys;
using namespace Qt::Literals::StringLiterals;

/// What came in one call, from its arrival to the answer.
struct HandOvers::Batch {
    struct Made {
        HandOverRequest request;
        engine::DownloadPtr download;
    };
    std::vector<Outcome> outcomes;
    std::vector<Made> made;
    /// Of this call, and of those that wait for its end.
    std::vector<Reply> replies;
    platform::Seconds deadline = 0;  ///< On the monotonic scale.
    bool isOver = false;
};

HandOvers::HandOvers(app::DQMainController& controller, const QString& idsPath)
    : controller_(controller),
      ids_(idsPath, controller.surroundings().disks, controller.surroundings().loop),
      timers_(controller.surroundings().loop) {
    rememberThoseInQueue();
}

HandOvers::~HandOvers() = default;

/// Whoever handed them over may not have heard of it, and will ask again.
void HandOvers::rememberThoseInQueue() {
    app::Downloads found;
    for (const engine::DownloadPtr& download : controller_.downloads()) {
        const QString id = download->userSettings().string(keys::handOver);
        if (isHandOverId(id) && ids_.state(id) == HandOverIds::State::Unknown) {
            ids_.set(id, HandOverIds::State::Taken);
            download->setHeldBack(true);
            found.push_back(download);
        }
    }
    if (!found.empty()) {
        ids_.whenWritten([this, found](bool) {
            for (const engine::DownloadPtr& download : found) {
                download->setHeldBack(false);
            }
            controller_.queue().admission().startEligibleQueuedDownloadsWithTimer();
        });
    }
}

void HandOvers::handOver(const Requests& requests, const Reply& reply) {
    handOver(requests, reply, controller_.surroundings().loop.clock().monotonic());
}

HandOvers::BatchPtr HandOvers::batchUnderWay(const Requests& requests) const {
    for (const auto& request : requests) {
        if (const BatchPtr batch = request.value ? underWay_.value(request.value->id) : nullptr) {
            return batch;
        }
    }
    return nullptr;
}

void HandOvers::handOver(const Requests& requests, const Reply& reply, platform::Seconds arrival) {
    if (const BatchPtr other = batchUnderWay(requests)) {
        // What becomes of it is known when that one is over.
        other->replies.push_back([this, requests, reply, arrival](const Answer&) {
            handOver(requests, reply, arrival);
        });
        return;
    }
    double shortest = 1e9;
    for (const auto& request : requests) {
        if (!request.value) {
            continue;
        }
        if (ids_.state(request.value->id) == HandOverIds::State::Withdrawn) {
            reply({Answer::Error::TooLate});
            return;
        }
        shortest = std::min(shortest, request.value->deadline);
    }
    const auto batch = std::make_shared<Batch>();
    const bool wasEmpty = controller_.downloads().empty();
    batch->deadline = arrival + shortest;
    batch->replies.push_back(reply);
    for (const auto& request : requests) {
        batch->outcomes.push_back(take(request, *batch));
    }
    if (batch->made.empty()) {
        end(batch, {Answer::Error::None, batch->outcomes});
        return;
    }
    // Showing the list for each of a thousand that come at once would take a while.
    if (added_.empty()) {
        timers_.start(
            0, [this, wasEmpty] { controller_.didAdd(std::exchange(added_, {}), wasEmpty); });
    }
    for (const Batch::Made& made : batch->made) {
        underWay_[made.request.id] = batch;
        added_.push_back(made.download);
    }
    controller_.whenSaved(
        whileAlive([this, batch](bool isOnDisk) { didSaveQueue(batch, isOnDisk); }));
    const platform::Seconds now = controller_.surroundings().loop.clock().monotonic();
    timers_.start(std::max(batch->deadline - now, 0.0), [this, batch] {
        if (!batch->isOver) {
            takeBack(batch, Answer::Error::TooLate);
        }
    });
}

HandOvers::Outcome HandOvers::take(const Parsed<HandOverRequest>& request, Batch& batch) {
    if (!request.value) {
        return {Outcome::Kind::Refused, request.problem};
    }
    const QString& id = request.value->id;
    const bool isInBatch = std::any_of(batch.made.begin(), batch.made.end(),
                                       [&](const auto& made) { return made.request.id == id; });
    if (isInBatch || ids_.state(id) != HandOverIds::State::Unknown) {
        return {Outcome::Kind::Known};
    }
    engine::DownloadPtr download = addRecord(*request.value);
    if (!download) {
        return {Outcome::Kind::Refused, links::localized("It cannot be added to the list.")};
    }
    batch.made.push_back({*request.value, std::move(download)});
    return {Outcome::Kind::Saved};
}

engine::DownloadPtr HandOvers::addRecord(const HandOverRequest& request) {
    const bool starts = controller_.surroundings().defaults.get(app::settings::autoStart);
    return controller_.queue().add(request.url, starts, [&](engine::DQDownload& download) {
        engine::UserSettings& settings = download.userSettings();
        download.setHeldBack(true);
        settings.set(keys::handOver, request.id);
        QVariantMap captured = request.request;
        if (request.isPrivate) {
            if (!request.cookies.isEmpty()) {
                settings.set(keys::unkeptCookies, request.cookies);
                captured.insert(keys::requestPartialHeaders,
                                captured.value(keys::requestPartialHeaders).toMap());
            }
        } else {
            if (!request.cookies.isEmpty()) {
                QVariantMap headers = captured.value(keys::requestPartialHeaders).toMap();
                headers[u"Cookie"_s] = request.cookies;
                captured[keys::requestPartialHeaders] = headers;
            }
            if (!request.page.isEmpty()) {
                settings.set(keys::page, request.page);
            }
        }
        if (!captured.isEmpty()) {
            settings.set(keys::request, captured);
        }
        if (!request.name.isEmpty()) {
            download.setName(request.name);
            download.userSettings().set(keys::keepsName, true);
        }
    });
}

void HandOvers::didSaveQueue(const BatchPtr& batch, bool isOnDisk) {
    if (batch->isOver) {
        return;
    }
    if (!isOnDisk) {
        takeBack(batch, Answer::Error::NotSaved);
        return;
    }
    for (const Batch::Made& made : batch->made) {
        if (ids_.state(made.request.id) != HandOverIds::State::Withdrawn) {
            ids_.set(made.request.id, HandOverIds::State::Taken);
        }
    }
    ids_.whenWritten([this, batch](bool isWritten) { didSaveIds(batch, isWritten); });
}

void HandOvers::didSaveIds(const BatchPtr& batch, bool isOnDisk) {
    if (batch->isOver) {
        return;
    }
    if (!isOnDisk) {
        takeBack(batch, Answer::Error::NotSaved);
    } else if (controller_.surroundings().loop.clock().monotonic() > batch->deadline) {
        takeBack(batch, Answer::Error::TooLate);
    } else {
        release(batch);
    }
}

void HandOvers::release(const BatchPtr& batch) {
    end(batch, {Answer::Error::None, batch->outcomes});
    for (const Batch::Made& made : batch->made) {
        if (!controller_.queue().contains(*made.download)) {
            continue;
        }
        offerRenewal(controller_,
                     {made.download, made.request.page, made.request.name, made.request.size},
                     timers_);
    }
}

/// Answered only when that is on disk too: a sender that hears it keeps its own download.
void HandOvers::takeBack(const BatchPtr& batch, Answer::Error error) {
    batch->isOver = true;
    for (const Batch::Made& made : batch->made) {
        remove(made.download);
        ids_.set(made.request.id, HandOverIds::State::Withdrawn);
    }
    controller_.whenSaved(whileAlive([this, batch, error](bool) {
        ids_.whenWritten([this, batch, error](bool) { end(batch, {error}); });
    }));
}

void HandOvers::end(const BatchPtr& batch, const Answer& answer) {
    batch->isOver = true;
    for (const Batch::Made& made : batch->made) {
        underWay_.remove(made.request.id);
    }
    for (const Reply& reply : std::exchange(batch->replies, {})) {
        reply(answer);
    }
}

void HandOvers::remove(const engine::DownloadPtr& download) {
    if (controller_.queue().contains(*download)) {
        download->remove();
    }
}

engine::DownloadPtr HandOvers::recordOf(const QString& id) const {
    const app::Downloads& downloads = controller_.downloads();
    const auto found = std::find_if(downloads.begin(), downloads.end(), [&](const auto& download) {
        return !download->isBeingRemoved() && download->userSettings().string(keys::handOver) == id;
    });
    return found == downloads.end() ? nullptr : *found;
}

void HandOvers::withdraw(const QString& id, const std::function<void(std::optional<bool>)>& reply) {
    const engine::DownloadPtr download = recordOf(id);
    const bool isDone = download && download->status() == engine::DQDownloadStatusDone;
    // What has left the queue already is done, or was removed by the user.
    const bool hasLeft = !download && ids_.state(id) == HandOverIds::State::Taken;
    if (isDone || hasLeft) {
        reply(false);
        return;
    }
    if (download) {
        remove(download);
    }
    ids_.set(id, HandOverIds::State::Withdrawn);
    const auto whenSaved = [this, reply](bool isSaved) {
        ids_.whenWritten([reply, isSaved](bool isWritten) {
            reply(isSaved && isWritten ? std::optional(true) : std::nullopt);
        });
    };
    if (download) {
        controller_.whenSaved(whileAlive(whenSaved));
    } else {
        whenSaved(true);
    }
}

}  // namespace scripting
