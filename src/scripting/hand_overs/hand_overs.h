#pragma once

#include <QHash>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/main_controller.h"
#include "platform/base/timer.h"
#include "scripting/hand_overs/hand_over_ids.h"
#include "scripting/requests.h"

namespace scripting {

/// Takes over downloads from browsers, each exactly once, whoever is killed when: a record and its
/// id are on disk before it starts and before its sender hears of it, and an id that comes again
/// makes nothing new. Main thread.
class HandOvers {
public:
    /// The controller has read its queue, and outlives this.
    HandOvers(app::DQMainController& controller, const QString& idsPath);
    ~HandOvers();
    HandOvers(const HandOvers&) = delete;
    HandOvers& operator=(const HandOvers&) = delete;

    struct Outcome {
        enum class Kind { Saved, Known, Refused };
        Kind kind = Kind::Saved;
        QString text = {};  ///< Why it was refused, in the user's language.
    };
    struct Answer {
        enum class Error { None, TooLate, NotSaved };
        Error error = Error::None;
        std::vector<Outcome> outcomes = {};  ///< Of each request, if there was no error.
    };
    using Reply = std::function<void(const Answer&)>;

    /// All of them, or after an error none.
    void handOver(const std::vector<Parsed<HandOverRequest>>& requests, const Reply& reply);
    /// Answers true when nothing of it exists any more, and nothing will.
    /// Nothing: it is gone here, but not on the disk, and might come back.
    void withdraw(const QString& id,
                  const std::function<void(std::optional<bool> isWithdrawn)>& reply);

private:
    struct Batch;
    using BatchPtr = std::shared_ptr<Batch>;
    using Requests = std::vector<Parsed<HandOverRequest>>;

    void rememberThoseInQueue();
    void handOver(const Requests& requests, const Reply& reply, platform::Seconds arrival);
    /// Null: none of them is still being saved for another call.
    [[nodiscard]] BatchPtr batchUnderWay(const Requests& requests) const;
    /// A call that is dropped if this goes before.
    template <typename Call>
    [[nodiscard]] auto whileAlive(Call call) const {
        return [alive = std::weak_ptr(alive_), call](auto... arguments) {
            if (!alive.expired()) {
                call(arguments...);
            }
        };
    }
    [[nodiscard]] Outcome take(const Parsed<HandOverRequest>& request, Batch& batch);
    [[nodiscard]] engine::DownloadPtr addRecord(const HandOverRequest& request);
    void didSaveQueue(const BatchPtr& batch, bool isOnDisk);
    void didSaveIds(const BatchPtr& batch, bool isOnDisk);
    void release(const BatchPtr& batch);
    void takeBack(const BatchPtr& batch, Answer::Error error);
    void end(const BatchPtr& batch, const Answer& answer);
    void remove(const engine::DownloadPtr& download);
    [[nodiscard]] engine::DownloadPtr recordOf(const QString& id) const;

    app::DQMainController& controller_;
    HandOverIds ids_;
    /// By the ids that they make records of.
    QHash<QString, BatchPtr> underWay_;
    app::Downloads added_;  ///< The list is yet to be told of them.
    platform::Timers timers_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace scripting
