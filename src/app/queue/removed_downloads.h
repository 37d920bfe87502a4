#pragma once

#include <QString>
#include <QVariantList>
#include <deque>
#include <functional>
#include <vector>

#include "engine/queue/download_queue.h"
#include "platform/base/clock.h"

namespace app {

/// What the user has taken out of the list and may want back, the last removal first. Nothing of it
/// is destroyed before the program quits or so much was removed after it that it is forgotten.
///
/// A killed program neither forgets nor undoes a removal: the queue's file names what has data, and
/// the next start takes that in as removed. Main thread.
class RemovedDownloads {
public:
    struct Surroundings {
        engine::DownloadQueue& queue;
        /// Whether its row is on the way out of the list.
        std::function<bool(const engine::DQDownload&)> isLeaving;
        /// Its row is to stay after all.
        std::function<void(const engine::DQDownload&)> keepRow;
        /// Something can be undone, in a sentence that says what; empty: not any more.
        std::function<void(const QString& sentence)> told;
    };

    explicit RemovedDownloads(Surroundings surroundings);
    ~RemovedDownloads();
    RemovedDownloads(const RemovedDownloads&) = delete;
    RemovedDownloads& operator=(const RemovedDownloads&) = delete;

    /// A download is about to leave the queue, together with those noted since the last `endStep`.
    void note(const engine::DownloadPtr& download);
    /// What was noted is one removal, and is still in the queue.
    void endStep();
    /// Something else was removed that `putBack` brings again.
    void add(const QString& sentence, std::function<void()> putBack);

    /// What `undo` would take back, in a sentence. Empty: nothing.
    [[nodiscard]] QString last() const;
    /// How long the last removal is still so fresh that nothing may come in between.
    [[nodiscard]] platform::Seconds freshFor() const;
    /// Takes the last removal back. The downloads that are in the queue again.
    engine::Downloads undo();
    /// Deletes what is kept, for good.
    void giveUp();

    /// For the queue's file: those with data.
    [[nodiscard]] QVariantList archives() const;
    /// Takes in what the file of a killed program has of them, out of the queue.
    void takeIn(const std::vector<engine::DownloadQueue::Place>& removed);

private:
    struct Step;

    void push(Step step);
    [[nodiscard]] QString sentence(const Step& step) const;

    const Surroundings surroundings_;
    engine::Downloads noted_;
    std::deque<Step> steps_;
    platform::Seconds fresh_ = 0;  ///< Until then, on the monotonic scale.
};

}  // namespace app
