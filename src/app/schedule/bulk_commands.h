#pragma once

#include "app/front_end.h"
#include "app/queue/list_presenter.h"
#include "engine/status.h"

namespace app {

/// Commands that act on many downloads: on those of the context (the selected ones, or all shown)
/// unless they are given. What a command does not apply to is left alone. Main thread.
class BulkCommands {
public:
    /// `downloads` are copied, since all of this changes the queue.
    BulkCommands(ListPresenter& list, DownloadListView& view, Questions& questions);

    void queueDownloads(Downloads downloads);
    void pauseDownloads(Downloads downloads);

    /// Those that are paused.
    void queuePaused();
    /// Those that wait; what runs goes on.
    void pauseQueued();
    /// Those that wait or run.
    void pauseAll();
    /// The two-part button: part 1 pauses what waits, any other queues what is paused.
    void queueOrPause(int segment);

    /// Takes them out of the queue with all that they have fetched; finished files stay. `asks`:
    /// only if the user confirms.
    void cancelAll(bool asks);

    /// Whether the command has anything to act on.
    [[nodiscard]] bool canQueuePaused();
    [[nodiscard]] bool canPauseQueued();
    [[nodiscard]] bool canPauseAll();
    [[nodiscard]] bool canCancelAll();

private:
    [[nodiscard]] Downloads context(engine::StatusMask mask);
    [[nodiscard]] bool hasContext(engine::StatusMask mask);

    ListPresenter& list_;
    DownloadListView& view_;
    Questions& questions_;
};

}  // namespace app
