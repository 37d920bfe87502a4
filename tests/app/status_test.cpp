#include "app/queue/state_filter.h"
#include "app/schedule/automation.h"
#include "app/settings.h"
#include "app/status/queue_status_reporter.h"
#include "app/status/queue_totals.h"
#include "core_fixture.h"
#include "engine/queue/queue_tally.h"
#include "engine/settings.h"
#include "support/memory_notifications.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using app::ApplicationImage;
using engine::DQDownloadStatusAborted, engine::DQDownloadStatusDone,
    engine::DQDownloadStatusDownloading, engine::DQDownloadStatusPaused,
    engine::DQDownloadStatusQueued;

class StatusTest : public Core {
protected:
    StatusTest() { makeReporter(); }
    ~StatusTest() override { controller->setStatusReporter(nullptr); }

    void makeReporter() {
        app::FrontEnd ends = frontEnd.frontEnd();
        ends.notifications = &notifications;
        reporter = std::make_unique<app::QueueStatusReporter>(
            app::QueueStatusReporter::Surroundings{*controller, defaults, main.loop, ends});
        controller->setStatusReporter(reporter.get());
        QObject::connect(reporter.get(), &app::QueueStatusReporter::applicationImageChanged,
                         reporter.get(), [this](const ApplicationImage& drawn) {
                             image = drawn;
                             ++drawings;
                         });
        QObject::connect(controller.get(), &app::DQMainController::terminated, reporter.get(),
                         [this] { ++terminations; });
    }
    void set(const QString& name, engine::DQDownloadStatus status) { end(*download(name), status); }
    QString text() const { return controller->queueStatus().text; }

    support::MemoryNotifications notifications;
    std::unique_ptr<app::QueueStatusReporter> reporter;
    ApplicationImage image;
    int drawings = 0, terminations = 0;
};

TEST(QueueTotals, SayWhatIsKnown) {
    const auto said = [](const app::QueueTotals& totals, double fraction) {
        return app::totalsText(totals) + u"|"_s + app::shortTotalsText(totals, fraction);
    };
    EXPECT_EQ(said({}, -1), u"|"_s);
    EXPECT_EQ(said({}, 0.349), u"|34 %"_s);
    EXPECT_EQ(said({606400, 0}, 0.02), u"606 KB/s|2 % · 606 KB/s"_s);
    EXPECT_EQ(said({1400000, 90}, 1), u"1.4 MB/s - 1:30 remaining|100 % · 1.4 MB/s"_s);
}

TEST_F(StatusTest, CountsWhatIsUnfinished) {
    add({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    EXPECT_EQ(text(), u"4 downloads"_s);
    EXPECT_FALSE(controller->queueStatus().canClear);
    set(u"a"_s, DQDownloadStatusDownloading);
    set(u"b"_s, DQDownloadStatusPaused);
    set(u"c"_s, DQDownloadStatusAborted);
    EXPECT_EQ(text(), u"1 of 3 downloads"_s);
    EXPECT_EQ(image.upperCount, 2) << "those that wait are on top";
    EXPECT_EQ(image.lowerCount, 1);
    EXPECT_TRUE(controller->queueStatus().canClear);
    controller->setFilterText(u"a.example"_s);
    defaults.set(app::settings::swapDockCounters, false);
    controller->setFilterCriterion(u"URL"_s);
    EXPECT_EQ(text(), u"1 of 3 downloads \u2014 0 filtered"_s);
    EXPECT_EQ(image.upperCount, 1);
    controller->setFilterText({});
    controller->setStateFilter({app::RowState::Failed, {}});
    EXPECT_EQ(text(), u"1 of 3 downloads \u2014 3 hidden"_s);
    controller->setStateFilter({});
    set(u"b"_s, DQDownloadStatusDone);
    set(u"d"_s, DQDownloadStatusPaused);
    set(u"a"_s, DQDownloadStatusPaused);
    EXPECT_EQ(text(), u"2 downloads"_s);
    EXPECT_LT(image.fraction, 0) << "nothing is on its way";
    download(u"d"_s)->remove();
    main.advance(5);
    EXPECT_EQ(text(), u"1 download"_s);
    EXPECT_EQ(controller->tally().count(engine::anyStatus), controller->numberOfDownloads());
    controller->retry({download(u"c"_s)});
    EXPECT_EQ(controller->tally().count(engine::finishedStatuses), 1) << "replaced, not added";
}

TEST_F(StatusTest, RemembersHowMuchTheBatchHeld) {
    add({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    set(u"a"_s, DQDownloadStatusDownloading);
    EXPECT_EQ(image.fraction, 0);
    set(u"a"_s, DQDownloadStatusDone);
    EXPECT_EQ(image.fraction, 0.25);
    download(u"b"_s)->togglePause();
    progress(*download(u"c"_s));
    controller->updateStatusAndForceUpdateApplicationImage(true);
    EXPECT_DOUBLE_EQ(image.fraction, 1.0 / 3) << "what the user holds back does not count";
    add({u"e"_s});
    controller->updateStatusAndForceUpdateApplicationImage(true);
    EXPECT_EQ(image.fraction, 0) << "more work, another batch";
}

TEST(ApplicationImageGateTest, DrawsWhatIsWorthIt) {
    support::ManualClock clock;
    app::ApplicationImageGate gate(clock);
    struct Case {
        platform::Seconds later;
        qint64 upper;
        double fraction;
        bool force, draws;
    };
    for (const Case& test : {Case{0, 0, -1.0, false, false},
                             {0, 1, 0.0, false, true},
                             {0.1, 1, 0.05, false, false},
                             {0.1, 1, 0.21, false, true},
                             {0.5, 1, 0.25, false, false},
                             {0.1, 1, 0.25, false, true},
                             {9.0, 1, 0.255, false, false},
                             {0.0, 2, 0.255, false, true},
                             {0.0, 2, 0.255, true, true}}) {
        clock.advance(test.later);
        EXPECT_EQ(gate.admits({test.upper, 0, ApplicationImage::Overlay::None, test.fraction},
                              test.force),
                  test.draws)
            << test.fraction;
    }
}

TEST_F(StatusTest, AsksForAttentionAsOftenAsTheSettingsSay) {
    struct Case {
        qint64 bounce, heartbeat;
        int attentions, sounds;
    };
    for (const Case& test : {Case{0, 0, 0, 0}, {1, 2, 2, 1}, {2, 1, 1, 2}, {7, 0, 1, 0}}) {
        frontEnd.attentions = 0;
        frontEnd.sounds.clear();
        defaults.set(app::settings::successBounceMode, test.bounce);
        defaults.set(app::settings::successHeartbeatMode, test.heartbeat);
        add({u"a"_s, u"b"_s, u"c"_s});
        download(u"c"_s)->remove();
        set(u"a"_s, DQDownloadStatusDone);
        set(u"b"_s, DQDownloadStatusAborted);
        main.advance(5);
        EXPECT_EQ(frontEnd.attentions, test.attentions) << test.bounce;
        EXPECT_EQ(frontEnd.sounds.size(), test.sounds) << test.heartbeat;
        controller->clear();
        main.advance(5);
    }
}

TEST_F(StatusTest, TellsTheEndAndGathersIfWanted) {
    add({u"a"_s, u"b"_s, u"c"_s});
    EXPECT_EQ(notifications.takeTexts(), QStringList{u"Added to Queue: a\nb\nc"_s});
    set(u"a"_s, DQDownloadStatusDone);
    set(u"b"_s, DQDownloadStatusDone);
    set(u"c"_s, DQDownloadStatusAborted);
    notifications.takeTexts();
    main.advance(0.2);
    EXPECT_EQ(notifications.takeTexts(),
              QStringList{u"Download Complete: No active downloads remaining"_s});
    controller->clear();
    main.advance(5);
    EXPECT_EQ(notifications.takeTexts(), QStringList()) << "told once";

    defaults.set(app::settings::coalesceUserNotifications, true);
    defaults.set(app::settings::invertUserNotifications, true);
    add({u"a"_s, u"b"_s});
    set(u"a"_s, DQDownloadStatusDone);
    set(u"b"_s, DQDownloadStatusDone);
    main.advance(0.2);
    EXPECT_EQ(notifications.delivered.back().text, u"b\na\n\nDone"_s);
    EXPECT_EQ(notifications.delivered.back().identifier,
              u"com.tarnworks.Orlop: Download Complete"_s);
    notifications.activate(notifications.delivered.back().identifier);
    EXPECT_EQ(frontEnd.moves, QStringList{u"activate"_s});
    add({u"c"_s});
    notifications.takeTexts();
    download(u"c"_s)->remove();
    main.advance(5);
    EXPECT_EQ(notifications.takeTexts(), QStringList()) << "the user took the last one out";
    add({u"d"_s});
    notifications.takeTexts();
    set(u"d"_s, DQDownloadStatusDone);
    EXPECT_EQ(notifications.takeTexts(), QStringList{u"Download Complete: d"_s})
        << "a click has emptied the list";

    defaults.set(engine::settings::privateDownloading, true);
    add({u"e"_s});
    EXPECT_EQ(notifications.takeTexts(), QStringList());
    defaults.set(app::settings::privateDownloadingSendsUserNotifications, true);
    add({u"f"_s});
    EXPECT_EQ(notifications.takeTexts().size(), 1);
}

TEST_F(StatusTest, LetsNoCrowdOfNotificationsGather) {
    add(numbered(7));
    notifications.takeTexts();
    const auto finish = [this](int number) {
        set(u"f%1"_s.arg(number), DQDownloadStatusDone);
        return notifications.delivered.back();
    };
    for (int number = 0; number < 3; ++number)
        EXPECT_EQ(finish(number).identifier, QString());
    const QString shared = finish(3).identifier;
    EXPECT_FALSE(shared.isEmpty());
    EXPECT_EQ(finish(4).text, u"f4\nand 1 more"_s);
    const platform::UserNotification last = finish(5);
    EXPECT_EQ(last.text, u"f5\nand 2 more"_s);
    EXPECT_EQ(last.identifier, shared) << "in its place";
    controller->windowWasSeen();
    EXPECT_EQ(finish(6).identifier, QString()) << "after a look";
}

TEST_F(StatusTest, SetsOffWhatIsToHappenAtTheEnd) {
    defaults.set(app::settings::autoQuit, true);
    controller->updateStatusAndForceUpdateApplicationImage(false);
    main.advance(5);
    EXPECT_EQ(terminations, 0) << "nothing was there to be done";
    add({u"a"_s});
    set(u"a"_s, DQDownloadStatusDone);
    main.advance(0.9);
    add({u"b"_s});
    main.advance(5);
    EXPECT_EQ(terminations, 0) << "withdrawn";

    app::AllDone& allDone = controller->allDone();
    allDone._mayTriggerSleepOnAllDone = true;
    controller->updateStatusAndForceUpdateApplicationImage(true);
    EXPECT_EQ(image.overlay, ApplicationImage::Overlay::SleepWhenDone);
    set(u"b"_s, DQDownloadStatusAborted);
    main.advance(5);
    EXPECT_EQ(power.sleepRequests, 1);
    EXPECT_EQ(terminations, 0);
    EXPECT_FALSE(allDone._mayTriggerSleepOnAllDone);
    EXPECT_EQ(image.overlay, ApplicationImage::Overlay::None);

    allDone._mayTriggerShutDownOnAllDone = true;
    power.grants = false;
    add({u"c"_s});
    set(u"c"_s, DQDownloadStatusDone);
    controller->updateStatusAndForceUpdateApplicationImage(true);
    EXPECT_EQ(power.shutDownRequests, 1) << "asked once";
    EXPECT_EQ(image.overlay, ApplicationImage::Overlay::ShutDownWhenDone);
    power.grants = true;
    add({u"d"_s});
    set(u"d"_s, DQDownloadStatusDone);
    EXPECT_EQ(power.shutDownRequests, 2);
    EXPECT_EQ(terminations, 1);
    EXPECT_TRUE(frontEnd.alerts.empty()) << "nothing was active";
}

TEST_F(StatusTest, AsksBeforeItActsAtOnceSinceAllIsDone) {
    app::Toggles& toggles = controller->automation().toggles();
    add({u"a"_s});
    set(u"a"_s, DQDownloadStatusDone);
    frontEnd.alerts.clear();
    toggles.toggleAutoSleep();
    main.advance(5);
    ASSERT_EQ(frontEnd.alerts.size(), 1U);
    EXPECT_EQ(frontEnd.alerts[0].defaultButton, u"Sleep Now"_s);
    EXPECT_EQ(power.sleepRequests, 0) << "declined";
    frontEnd.onConfirm = [](const app::Alert&) { return true; };
    toggles.toggleAutoSleep();
    main.advance(5);
    EXPECT_EQ(power.sleepRequests, 1);

    // While something is to be done there is nothing to ask.
    frontEnd.alerts.clear();
    add({u"b"_s});
    toggles.toggleAutoSleep();
    main.advance(5);
    EXPECT_TRUE(frontEnd.alerts.empty());
    EXPECT_EQ(power.sleepRequests, 1);
    EXPECT_TRUE(toggles.mayTriggerSleepOnAllDone());
}

TEST_F(StatusTest, QuitsWhenTheReasonForTheQuestionIsGone) {
    add({u"a"_s});
    frontEnd.onConfirm = [this](const app::Alert&) {
        set(u"a"_s, DQDownloadStatusDone);
        EXPECT_EQ(frontEnd.dismissed, 1);
        return false;
    };
    controller->terminate();
    EXPECT_EQ(terminations, 0);
    main.settle();
    EXPECT_EQ(terminations, 1);
}

}  // namespace
