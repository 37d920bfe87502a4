#pragma once

#include <QObject>
#include <functional>

#include "app/queue/download_order.h"
#include "app/terminal/refresh.h"
#include "app/terminal/reporter.h"
#include "app/terminal/run_ledger.h"
#include "engine/lifecycle/download.h"
#include "platform/base/timer.h"

namespace platform {
class UserDefaults;
}

namespace app {
class DQMainController;
}

namespace app::terminal {

/// One run from its start to the moment when nothing is left to do: tells what happens to the
/// downloads, shows how they come along and notices the end. Main thread.
class Session final : public QObject {
public:
    /// All of it outlives the session.
    struct Surroundings {
        DQMainController& controller;
        Reporter& reporter;
        platform::RunLoop& loop;
        const platform::UserDefaults& defaults;
    };

    /// `didEnd` is called once, on the main loop, when no download waits, runs or will be taken up
    /// again by itself.
    Session(Surroundings surroundings, std::function<void()> didEnd);

    /// From now on the end is looked out for.
    void begin();
    /// To be called whenever the screen may not show what it should.
    void requestRefresh();
    /// Nothing is drawn between these two.
    void suspend();
    void resume();

    /// Whether something that was asked for is not there.
    [[nodiscard]] bool hasFailures() const { return hasProblems_ || ledger_.failures() > 0; }

private:
    void noteChange(const engine::DownloadPtr& download);
    void noteWait(engine::DQDownload& download, RunLedger::State state);
    void tell(Event::Kind kind, engine::DQDownload& download);
    void tellProblems(const QStringList& problems);
    /// What was given and stands in the queue already is wanted all the same: it is queued unless
    /// it waits or is done.
    void takeUpAgain(const Downloads& known);
    [[nodiscard]] bool draw();
    void lookForEndSoon();
    void lookForEnd();
    [[nodiscard]] bool willTakeUpAgain() const;

    Surroundings surroundings_;
    std::function<void()> didEnd_;
    Refresh refresh_;
    RunLedger ledger_;
    platform::Seconds lastFailure_ = -1e9;
    bool hasProblems_ = false;
    bool hasBegun_ = false;
    bool isSuspended_ = false;
    platform::Timer look_;  ///< For the end.
};

}  // namespace app::terminal
