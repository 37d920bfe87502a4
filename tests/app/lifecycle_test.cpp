
#include <QFile>

#include "app/lifecycle/lifecycle.h"
#include "app/lifecycle/settings_effects.h"
#include "app/settings.h"
#include "core_fixture.h"
#include "engine/settings.h"
#include "http/http_request.h"
#include "http/http_session.h"
#include "links/pages/download_page_rule_store.h"
#include "links/settings.h"
#include "support/log_recorder.h"

using namespace Qt::Literals::StringLiterals;

namespace {

class LifecycleTest : public Core {
protected:
    struct Schedule final : app::Scheduler {
        int resets = 0, disables = 0;
        void resetSchedule() override { ++resets; }
        void disableSchedule() override { ++disables; }
    };
    struct History final : app::HistoryKeeper {
        int cleanUps = 0;
        void cleanUp() override { ++cleanUps; }
    };

    LifecycleTest() {
        controller->setScheduler(&schedule);
        controller->setHistory(&history);
        QObject::connect(controller.get(), &app::DQMainController::terminated, controller.get(),
                         [this] { ++terminations; });
    }
    void launch() {
        frontEnd.moves.clear();
        frontEnd.isVisible = false;
        controller->applicationDidFinishLaunching();
    }
    engine::DQDownloadStatus status(const QString& name) { return download(name)->status(); }

    Schedule schedule;
    History history;
    int terminations = 0;
};

TEST_F(LifecycleTest, ComesUpAsTheModeSays) {
    struct Case {
        qint64 mode;
        bool isVisibleOnLaunch, isInBackground;
        QStringList moves;
    };
    for (const Case& test : {Case{0, true, false, {u"activate"_s}},
                             {0, true, true, {u"show"_s}},
                             {0, false, false, {}},
                             {1, true, false, {}},
                             {2, true, false, {u"activate"_s}}}) {
        defaults.set(app::settings::applicationMode, test.mode);
        defaults.set(app::settings::mainWindowVisibleOnLaunch, test.isVisibleOnLaunch);
        defaults.set(app::settings::backgroundLaunch, test.isInBackground);
        launch();
        EXPECT_EQ(frontEnd.moves, test.moves) << test.mode;
    }
    EXPECT_EQ(schedule.resets, 5);
    EXPECT_FALSE(controller->lifecycle().applicationShouldHandleReopen() && !frontEnd.isVisible);
}

TEST_F(LifecycleTest, PausesForSleepAndResumesWhatItPaused) {
    launch();
    add({u"a"_s, u"b"_s});
    download(u"b"_s)->pause();
    EXPECT_TRUE(power.preventsIdleSleep);
    power.observers.willSleep();
    EXPECT_FALSE(power.preventsIdleSleep);
    EXPECT_EQ(schedule.disables, 1);
    ASSERT_EQ(savedURLs().size(), 2);
    EXPECT_FALSE(savedQueue().toList()[0].toMap().value(u"Paused"_s).toBool())
        << "it goes on even if the machine never wakes";
    EXPECT_TRUE(savedQueue().toList()[1].toMap().value(u"Paused"_s).toBool());
    EXPECT_EQ(status(u"a"_s), engine::DQDownloadStatusPaused);
    const int resets = schedule.resets;
    power.observers.didWake();
    main.advance(2);
    power.observers.didWake();
    main.advance(2);
    EXPECT_EQ(status(u"a"_s), engine::DQDownloadStatusPaused) << "the later waking counts";
    main.advance(2);
    EXPECT_EQ(status(u"a"_s), engine::DQDownloadStatusQueued);
    EXPECT_EQ(status(u"b"_s), engine::DQDownloadStatusPaused) << "the user had paused it";
    EXPECT_EQ(schedule.resets, resets + 2);
    power.observers.timeDidChange();
    EXPECT_EQ(schedule.resets, resets + 3);

    defaults.set(app::settings::autoResumeAfterSleepDelay, qint64{-1});
    power.observers.willSleep();
    power.observers.didWake();
    main.advance(60);
    EXPECT_EQ(status(u"a"_s), engine::DQDownloadStatusPaused);
}

TEST_F(LifecycleTest, EndsOnlyIfTheUserAgrees) {
    launch();
    add({u"a"_s});
    controller->terminate();
    EXPECT_EQ(terminations, 0);
    EXPECT_EQ(schedule.disables + history.cleanUps + frontEnd.faded, 0);
    frontEnd.onConfirm = [](const app::Alert&) { return true; };
    controller->terminate();
    EXPECT_EQ(terminations, 1);
    EXPECT_EQ(schedule.disables, 1);
    EXPECT_EQ(history.cleanUps, 1);
    EXPECT_EQ(frontEnd.faded, 1);
    EXPECT_FALSE(power.observers.willSleep);
    EXPECT_EQ(savedURLs().size(), 1);
}

TEST_F(LifecycleTest, ClosingTheWindowQuitsAsTheSettingsSay) {
    struct Case {
        bool quits, cleanSlateOnly, isActive, confirms;
        bool closes, terminates, wouldLose;
    };
    for (const Case& test : {Case{false, false, true, false, true, false, false},
                             {true, false, false, false, true, true, false},
                             {true, false, true, false, false, false, true},
                             {true, false, true, true, true, true, true},
                             {true, true, true, false, true, false, false},
                             {true, true, false, false, true, true, false}}) {
        stop();
        start();
        terminations = 0;
        QObject::connect(controller.get(), &app::DQMainController::terminated, controller.get(),
                         [this] { ++terminations; });
        if (test.isActive) {
            add({u"a"_s});
        }
        frontEnd.onConfirm = [&](const app::Alert&) { return test.confirms; };
        defaults.set(app::settings::quitOnClose, test.quits);
        defaults.set(app::settings::quitOnCloseCleanSlateOnly, test.cleanSlateOnly);
        EXPECT_EQ(controller->lifecycle().wouldLoseDownloadsOnClose(), test.wouldLose);
        EXPECT_EQ(controller->lifecycle().windowShouldClose(), test.closes);
        EXPECT_EQ(terminations, test.terminates ? 1 : 0);
    }
}

TEST_F(LifecycleTest, NeverGoesOnUnseenWithoutSayingSo) {
    launch();
    QList<qint64> told;
    QObject::connect(controller.get(), &app::DQMainController::goesOnUnseen, controller.get(),
                     [&](qint64 count) { told.append(count); });
    add({u"a"_s, u"b"_s});
    app::Lifecycle& lifecycle = controller->lifecycle();
    EXPECT_TRUE(lifecycle.windowShouldClose());
    EXPECT_TRUE(lifecycle.windowShouldClose());
    EXPECT_EQ(told, QList<qint64>{2}) << "once";
    download(u"a"_s)->pause();
    download(u"b"_s)->pause();
    lifecycle.statusItemDidChange(true);
    EXPECT_TRUE(lifecycle.windowShouldClose());
    EXPECT_EQ(terminations, 0) << "the status item is there";
    lifecycle.statusItemDidChange(false);
    EXPECT_TRUE(lifecycle.windowShouldClose());
    EXPECT_EQ(terminations, 1) << "nothing goes on";
}

TEST_F(LifecycleTest, EndsWhenAllIsDoneThatWentOnUnseen) {
    launch();
    add({u"a"_s, u"b"_s});
    app::Lifecycle& lifecycle = controller->lifecycle();
    EXPECT_TRUE(lifecycle.windowShouldClose());
    frontEnd.isVisible = false;
    download(u"a"_s)->pause();
    download(u"b"_s)->setAutoResumeAfterSleep(true);
    download(u"b"_s)->pause();
    main.advance(200);
    EXPECT_EQ(terminations, 0) << "one goes on by itself";
    download(u"b"_s)->setAutoResumeAfterSleep(false);
    lifecycle.statusItemDidChange(true);
    main.advance(60);
    EXPECT_EQ(terminations, 0) << "the status item shows that it is there";
    lifecycle.statusItemDidChange(false);
    download(u"b"_s)->addToQueue();
    download(u"b"_s)->pause();
    main.advance(59);
    EXPECT_EQ(terminations, 0) << "what was told can still be answered";
    main.advance(1);
    EXPECT_EQ(terminations, 1);
}

TEST_F(LifecycleTest, StaysWhenItsWindowCameBack) {
    launch();
    add({u"a"_s});
    EXPECT_TRUE(controller->lifecycle().windowShouldClose());
    frontEnd.isVisible = true;
    download(u"a"_s)->pause();
    main.advance(200);
    frontEnd.isVisible = false;
    main.advance(200);
    EXPECT_EQ(terminations, 0);
}

TEST_F(LifecycleTest, FollowsTheApplicationModeAndOpensTheSettingsAskedFor) {
    defaults.set(app::settings::applicationMode, qint64{1});
    controller->lifecycle().willFinishLaunching();
    defaults.set(app::settings::applicationMode, qint64{2});
    defaults.set(app::settings::preferencesSection, u"Advanced"_s);
    launch();
    EXPECT_EQ(frontEnd.moves, QStringList{u"activate"_s});
    main.advance(1);
    defaults.set(app::settings::applicationMode, qint64{1});
    EXPECT_EQ(frontEnd.moves,
              QStringList({u"activate"_s, u"settings: Advanced"_s, u"no task bar"_s}));
    EXPECT_FALSE(defaults.hasValueForKey(app::settings::preferencesSection.name()));
}

TEST_F(LifecycleTest, LivesInTheStatusItemOnlyAsLongAsThereIsOne) {
    const support::LogRecorder log;
    defaults.set(app::settings::applicationMode, qint64{1});
    launch();
    controller->lifecycle().statusItemDidChange(true);
    EXPECT_EQ(frontEnd.moves, QStringList{u"no task bar"_s});
    frontEnd.moves.clear();
    controller->lifecycle().statusItemDidChange(false);
    EXPECT_EQ(frontEnd.moves, QStringList({u"task bar"_s, u"show"_s}));
    EXPECT_TRUE(log.contains(u"the desktop shows no status item; the window comes back"_s));
    controller->lifecycle().statusItemDidChange(true);
    EXPECT_EQ(frontEnd.moves.last(), u"no task bar"_s);
    frontEnd.moves.clear();
    defaults.set(app::settings::applicationMode, qint64{2});
    main.settle();
    controller->lifecycle().statusItemDidChange(false);
    EXPECT_FALSE(frontEnd.moves.contains(u"show"_s)) << "it is in the task bar anyway";
}

TEST_F(LifecycleTest, WaitsAMinuteForTheNetworkAfterWaking) {
    launch();
    add({u"a"_s});
    for (const int seconds : {20, 70}) {
        power.observers.willSleep();
        power.isOnline = false;
        power.observers.didWake();
        main.advance(20);
        EXPECT_EQ(status(u"a"_s), engine::DQDownloadStatusPaused);
        power.isOnline = seconds == 20;
        main.advance(seconds == 20 ? 1 : 41);
        EXPECT_EQ(status(u"a"_s), engine::DQDownloadStatusQueued) << seconds;
    }
}

TEST_F(LifecycleTest, SavesBeforeTheMachineGoesDown) {
    launch();
    add({u"a"_s});
    controller->finishWriting();
    QFile::remove(queuePath());
    power.observers.willShutDown();
    EXPECT_TRUE(QFile::exists(queuePath()));
}

TEST_F(LifecycleTest, AsksTheMachineToSleepOrShutDown) {
    QStringList refusals;
    QObject::connect(controller.get(), &app::DQMainController::machineRefused, controller.get(),
                     [&](const QString& sentence) { refusals.append(sentence); });
    controller->lifecycle().sleep();
    EXPECT_EQ(power.sleepRequests, 1);
    EXPECT_EQ(frontEnd.beeps, 0);
    power.grants = false;
    controller->lifecycle().sleep();
    EXPECT_EQ(frontEnd.beeps, 1);
    controller->lifecycle().shutDown();
    EXPECT_EQ(terminations, 0) << "it stays, saved";
    EXPECT_EQ(history.cleanUps, 1);
    EXPECT_EQ(frontEnd.beeps, 2);
    EXPECT_EQ(refusals, QStringList({u"The computer did not go to sleep: no"_s,
                                     u"The computer was not shut down: no"_s}));
    EXPECT_TRUE(power.observers.willSleep && frontEnd.isVisible) << "and goes on as before";
    power.grants = true;
    add({u"a"_s});
    controller->lifecycle().shutDown();
    EXPECT_EQ(power.shutDownRequests, 1) << "the user did not agree to quit";
    download(u"a"_s)->pause();
    controller->lifecycle().shutDown();
    EXPECT_EQ(terminations, 1);
}

TEST_F(LifecycleTest, IsSavedOnceWhenItEndsWhileTheMachineIsAskedToShutDown) {
    support::FakePower::Answer answer;
    power.pendingShutDown = &answer;
    defaults.set(app::settings::quitProcedure, qint64{1});
    launch();
    add({u"a"_s});
    controller->lifecycle().shutDown();
    ASSERT_TRUE(answer);
    controller->lifecycle().shutDown();
    EXPECT_EQ(power.shutDownRequests, 1);
    EXPECT_EQ(terminations, 0);
    controller->terminate();
    EXPECT_EQ(terminations, 1);
    EXPECT_EQ(frontEnd.faded, 1);
    EXPECT_FALSE(savedQueue().toList().value(0).toMap().value(engine::keys::paused).toBool());
    answer(u"no"_s);
    EXPECT_EQ(terminations, 1);
    EXPECT_EQ(frontEnd.beeps, 0) << "it is on its way out";
}

TEST_F(LifecycleTest, GetsOutOfTheWayAfterAnAddressWasHandedOver) {
    const auto handOver = [&](qint64 autoRetreat, bool isHidden) {
        defaults.set(app::settings::autoRetreat, autoRetreat);
        frontEnd.isVisible = true;
        frontEnd.isHiddenNow = isHidden;
        frontEnd.moves.clear();
        controller->openURLsAfterDelay({}, {}, true);
        main.advance(1);
        return frontEnd.moves;
    };
    EXPECT_EQ(handOver(0, false), QStringList());
    EXPECT_EQ(handOver(0, true), QStringList{u"unhide and activate"_s});
    EXPECT_EQ(handOver(1, false), QStringList()) << "another program has the focus";
    frontEnd.isActive = true;
    EXPECT_EQ(handOver(1, false), QStringList({u"back"_s, u"hide"_s, u"unhide"_s}));
    EXPECT_EQ(handOver(1, true), QStringList{u"unhide"_s});
    EXPECT_EQ(handOver(2, false), QStringList{u"hide"_s});
    EXPECT_EQ(handOver(2, true), QStringList());
}

class SettingsEffectsTest : public Core {
protected:
    http::HTTPSession session{main.clock};
    links::DownloadPageRuleStore pageRules{defaults};
    app::SettingsEffects effects{defaults, *controller, frontEnd, pageRules};
};

TEST_F(SettingsEffectsTest, BandwidthIsLimitedHoweverTheSettingChanged) {
    defaults.set(engine::settings::throttleLimit, qint64{5000});
    EXPECT_EQ(http::HTTPRequest::maxBandwidthPerSecond(), 0U);
    defaults.set(engine::settings::throttleEnabled, true);
    EXPECT_EQ(http::HTTPRequest::maxBandwidthPerSecond(), 5000U);
    defaults.set(engine::settings::throttleLimit, qint64{7000});
    EXPECT_EQ(http::HTTPRequest::maxBandwidthPerSecond(), 7000U);
    defaults.removeObject(engine::settings::throttleEnabled.name());
    EXPECT_EQ(http::HTTPRequest::maxBandwidthPerSecond(), 0U);
}

TEST_F(SettingsEffectsTest, OrderFilterAndNamesFollowTheirSettings) {
    add({u"b"_s, u"a.ex"_s});
    const auto shown = [&] {
        QStringList names;
        for (const auto& row : controller->sortedAndFilteredDownloads())
            names.append(row->name());
        return names;
    };
    defaults.set(app::settings::sortingCriterion, qint64{1});
    main.settle();
    EXPECT_EQ(shown(), QStringList({u"a.ex"_s, u"b"_s}));
    defaults.set(app::settings::invertSorting, true);
    main.settle();
    EXPECT_EQ(shown(), QStringList({u"b"_s, u"a.ex"_s}));
    controller->setFilterText(u"ex"_s);
    EXPECT_EQ(shown(), QStringList{u"a.ex"_s});
    defaults.set(app::settings::toolbarFilterCriterion, u"URL"_s);
    main.settle();
    EXPECT_EQ(shown().size(), 2) << "both hosts hold it";
    controller->setFilterText({});

    defaults.set(engine::settings::privateDownloading, true);
    const auto download = this->download(u"a.ex"_s);
    EXPECT_FALSE(download->displayName().endsWith(u".ex"_s));
    defaults.set(engine::settings::privateDownloadingPreservesExtensions, true);
    main.settle();
    EXPECT_TRUE(download->displayName().endsWith(u"ex"_s, Qt::CaseInsensitive))
        << qPrintable(download->displayName());
}

TEST_F(SettingsEffectsTest, NewRulesForDownloadPagesCountAtOnce) {
    const platform::Url page = *platform::Url::parse(address(u"a"_s));
    const auto isDownloadPage = [&] {
        return links::isDownloadPageURL(page, pageRules.downloadPageRules().get());
    };
    EXPECT_FALSE(isDownloadPage());
    defaults.set(links::settings::downloadPageRules,
                 uR"([{"Source": "a\\.example", "Query Cascade": ["x"]}])"_s);
    EXPECT_TRUE(isDownloadPage());
    EXPECT_EQ(frontEnd.delayedRedraws, std::vector<platform::Seconds>{0.1});
    defaults.removeObject(links::settings::downloadPageRules.name());
    EXPECT_FALSE(isDownloadPage());
}

}  // namespace
