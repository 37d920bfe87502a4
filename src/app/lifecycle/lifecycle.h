#pragma once

#include <functional>
#include <optional>

#include "app/controller_roles.h"
#include "app/front_end.h"
#include "engine/queue/download_queue.h"
#include "platform/base/timer.h"
#include "platform/base/user_defaults.h"
#include "platform/session/power.h"

namespace app {

/// How the program comes up, bears with the machine's sleep and clock, and ends. Main thread.
class Lifecycle {
public:
    struct Surroundings {
        engine::DownloadQueue& queue;
        platform::UserDefaults& defaults;
        platform::RunLoop& loop;
        platform::Power& power;
        FrontEnd frontEnd;
        /// Saves the queue and waits until it is on disk.
        std::function<void()> writeArchive;
        /// Saves the queue for good. False: the user does not want to quit.
        std::function<bool()> writeArchiveBeforeQuitting;
        std::function<Scheduler&()> scheduler;
        std::function<HistoryKeeper&()> history;
        /// The window is being closed while so many downloads go on, and nothing shows that.
        std::function<void(qint64 activeDownloads)> goesOnUnseen;
        /// The machine did not do what was asked of it, in a sentence.
        std::function<void(const QString& sentence)> refused;
        /// Nothing keeps the program running any more.
        std::function<void()> terminated;
    };

    explicit Lifecycle(Surroundings surroundings);
    ~Lifecycle();
    Lifecycle(const Lifecycle&) = delete;
    Lifecycle& operator=(const Lifecycle&) = delete;

    /// Before there are windows: shows them where the application mode says, from now on.
    void willFinishLaunching();
    /// The queue and the list are there: brings up the window as the settings say, and watches the
    /// machine.
    void didFinishLaunching();

    /// Saves and tidies up. False: the user does not want to quit, and nothing was changed.
    [[nodiscard]] bool shouldQuit();
    void terminate();
    /// The main window is to be closed. False: it stays. May end the program.
    [[nodiscard]] bool windowShouldClose();
    /// Whether closing the window now would take running downloads with it.
    [[nodiscard]] bool wouldLoseDownloadsOnClose() const;
    /// The program was started again while it runs. True: nothing needs to be done.
    bool applicationShouldHandleReopen();

    void sleep();
    /// Ends the program first; if the machine then refuses, the program stays.
    void shutDown();

    /// Whether a status item is shown. A program that lives in it alone would be out of reach
    /// without, so that its window comes up. Nothing: not known yet, or none is wanted.
    void statusItemDidChange(std::optional<bool> isShown);

    /// How many downloads are at each status may have changed.
    void statusDidChange();

    /// After an address was handed over from another program: goes out of the user's way as the
    /// settings say.
    void giveFeedback();
    /// Whether the window is to stay out of the way then.
    [[nodiscard]] bool retreats() const;

private:
    void watchMachine();
    void end();
    [[nodiscard]] bool shouldEndOnClose();
    void endUnlessSeen();
    void updateApplicationMode();
    [[nodiscard]] bool isInStatusItemOnly() const;
    void showPreferencesAskedFor();
    void stayAfterRefusal(const QString& refusal);
    void lookForNetwork(platform::Seconds next, platform::Seconds waited);
    void workspaceWillSleep();
    void workspaceDidWake();
    void timeDidChange();
    void resumeAfterSleep();
    void retreat();
    void unhideAfterRetreat();
    [[nodiscard]] bool isActive() const;

    Surroundings surroundings_;
    platform::Timer resuming_;
    platform::Timer ending_;
    platform::Timers windowChanges_;  ///< That must wait for the window system.
    bool hasTerminated_ = false;
    bool isGoingDown_ = false;  ///< Saved; whether the machine shuts down is not known yet.
    bool hasToldOfGoingOn_ = false;
    bool isUnseen_ = false;  ///< The window was closed while something went on.
    std::optional<bool> isStatusItemShown_;
    platform::Observation observation_;
};

}  // namespace app
