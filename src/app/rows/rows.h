#pragma once

#include "app/details/attempt_log.h"
#include "app/details/speed_history.h"
#include "app/rows/file_presence.h"
#include "app/rows/row_actions.h"
#include "app/rows/row_vanishing.h"
#include "app/rows/status_text.h"
#include "app/rows/wait_ticker.h"
#include "engine/queue/download_queue.h"
#include "platform/base/timer.h"

namespace app {

/// What rows show, offer and remember beyond what their downloads are. Main thread.
class Rows {
public:
    struct Surroundings {
        engine::DownloadQueue& queue;
        const Workspace& workspace;
        FrontEnd frontEnd;
        /// Takes a record out of the queue.
        std::function<void(engine::DQDownload&)> remove;
        /// Puts a new record in the place of one that has ended.
        std::function<void(engine::DQDownload&)> retry;
    };

    explicit Rows(const Surroundings& surroundings);

    [[nodiscard]] StatusTexts& texts() { return texts_; }
    [[nodiscard]] RowActions& actions() { return actions_; }
    [[nodiscard]] RowVanishing& vanishing() { return vanishing_; }

    /// `index` is a `DQDownloadAction`; nothing can be done with a row that is vanishing.
    [[nodiscard]] bool canPerformAction(engine::DQDownload& download, unsigned index);
    /// The button that is being pressed. 0: none.
    [[nodiscard]] unsigned highlightedActionButtonIndex(const engine::DQDownload& download) const;
    void setHighlightedActionButtonIndex(const engine::DQDownload& download, unsigned index);

    /// One after the other, with the interval of the settings between two.
    void openOriginalURLs(const engine::Downloads& downloads);

    /// How fast downloads came of late, and what has kept them from coming.
    [[nodiscard]] const SpeedHistory& speeds() const { return speeds_; }
    [[nodiscard]] AttemptLog& attempts() { return attempts_; }

    void note(const engine::StatusChange& change);
    /// It may have come further.
    void noteProgress(const engine::DQDownload& download);
    /// The record has left the queue.
    void forget(const engine::DQDownload& download);

private:
    FilePresence presence_;
    StatusTexts texts_;
    RowActions actions_;
    RowVanishing vanishing_;
    WaitTicker waits_;
    SpeedHistory speeds_;
    AttemptLog attempts_;
    engine::DownloadQueue& queue_;
    const platform::UserDefaults& defaults_;
    platform::Timers openings_;
    const engine::DQDownload* pressed_ = nullptr;
    unsigned _highlightedActionButtonIndex = 0;
};

}  // namespace app
