
#include <ctime>

#include "app/schedule/automation.h"
#include "app/schedule/scheduled_time.h"
#include "app/schedule/throttle_limit_text.h"
#include "app/settings.h"
#include "core_fixture.h"
#include "engine/acceleration/acceleration_settings.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// In Zurich, where clocks are set forward on 2027-03-28 at 2 and back on 2027-10-31 at 3.
class ScheduleTest : public Core {
protected:
    ScheduleTest() : zone_(qgetenv("TZ")) {
        qputenv("TZ", "Europe/Zurich");
        tzset();
    }
    ~ScheduleTest() override {
        zone_.isNull() ? qunsetenv("TZ") : qputenv("TZ", zone_);
        tzset();
    }

    void setTime(const QString& date) {
        main.clock.setWall(static_cast<double>(
                               QDateTime::fromString(date, Qt::ISODateWithMs).toMSecsSinceEpoch()) /
                           1000);
    }
    QDateTime now() const {
        return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(main.clock.wall() * 1000));
    }
    void advanceTo(const QString& date) {
        main.advance(
            static_cast<double>(now().msecsTo(QDateTime::fromString(date, Qt::ISODateWithMs))) /
            1000);
    }
    void scheduleQueuing(QTime time) {
        defaults.set(app::settings::scheduleQueue, true);
        toggles().changeScheduledTime(app::scheduledQueuingTime(), time);
    }
    void schedulePausing(QTime time, bool isRadical) {
        defaults.set(app::settings::schedulePause, true);
        defaults.set(app::settings::schedulePauseRadical, isRadical);
        toggles().changeScheduledTime(app::scheduledPausingTime(), time);
    }
    void launch() { controller->applicationDidFinishLaunching(); }
    app::Toggles& toggles() { return controller->automation().toggles(); }
    engine::DQDownloadStatus status(const QString& name) { return download(name)->status(); }
    /// The moments at which the status of "a" changes in that time, by day and half hour.
    QStringList changesUntil(const QString& end) {
        QStringList changes;
        engine::DQDownloadStatus last = status(u"a"_s);
        while (now() < QDateTime::fromString(end, Qt::ISODate)) {
            main.advance(1800);
            if (status(u"a"_s) != last) {
                last = status(u"a"_s);
                changes.append(now().toString(u"MM-dd HH:mm "_s) + QString::number(last));
            }
        }
        return changes;
    }

private:
    QByteArray zone_;
};

constexpr auto paused = engine::DQDownloadStatusPaused, queued = engine::DQDownloadStatusQueued;

TEST_F(ScheduleTest, QueuesAndPausesOnEveryDayOfAMonthAtTheSameLocalTime) {
    setTime(u"2027-03-10T12:00:00"_s);
    add({u"a"_s});
    scheduleQueuing({22, 0});
    schedulePausing({2, 30}, false);
    launch();
    const QStringList changes = changesUntil(u"2027-04-10T12:00:00"_s);
    QStringList expected;
    for (QDate day(2027, 3, 11); day <= QDate(2027, 4, 10); day = day.addDays(1)) {
        // That night has no 2:30.
        const QString pausing = day == QDate(2027, 3, 28) ? u"03:30"_s : u"02:30"_s;
        expected.append(day.toString(u"MM-dd "_s) + pausing + u" 1"_s);
        if (day != QDate(2027, 4, 10)) {
            expected.append(day.toString(u"MM-dd "_s) + u"22:00 2"_s);
        }
    }
    EXPECT_EQ(changes, expected);

    setTime(u"2027-10-30T12:00:00"_s);
    controller->automation().schedule().resetSchedule();
    EXPECT_EQ(changesUntil(u"2027-10-31T23:00:00"_s),
              QStringList({u"10-30 22:00 2"_s, u"10-31 02:30 1"_s, u"10-31 22:00 2"_s}))
        << "the night that has 2:30 twice";
}

TEST_F(ScheduleTest, LeavesOutATimeThatTheMachineOrItsClockHasPassed) {
    setTime(u"2027-06-01T21:00:00"_s);
    add({u"a"_s});
    download(u"a"_s)->pause();
    scheduleQueuing({22, 0});
    launch();
    power.observers.willSleep();
    advanceTo(u"2027-06-01T23:00:00"_s);
    EXPECT_EQ(status(u"a"_s), paused) << "nothing happens during sleep";
    power.observers.didWake();
    advanceTo(u"2027-06-02T21:59:59"_s);
    EXPECT_EQ(status(u"a"_s), paused);
    advanceTo(u"2027-06-02T22:00:00"_s);
    EXPECT_EQ(status(u"a"_s), queued);

    download(u"a"_s)->pause();
    setTime(u"2027-06-03T22:30:00"_s);
    power.observers.timeDidChange();
    main.advance(3600);
    EXPECT_EQ(status(u"a"_s), paused) << "set forward past the time";
    setTime(u"2027-06-03T21:59:00"_s);
    power.observers.timeDidChange();
    main.advance(59);
    EXPECT_EQ(status(u"a"_s), paused);
    main.advance(1);
    EXPECT_EQ(status(u"a"_s), queued) << "set back before it";
}

TEST_F(ScheduleTest, ATimeThatIsNoneIsTheUsualOne) {
    const auto& time = app::scheduledQueuingTime();
    for (const auto& [stored, expected] : std::initializer_list<std::pair<QVariant, QTime>>{
             {QVariant(), {22, 0}},
             {u"noon"_s, {22, 0}},
             {qint64{7}, {22, 0}},
             {QVariantMap{}, {22, 0}},
             {QVariantMap{{u"Hour"_s, u"x"_s}, {u"Minute"_s, qint64{5}}}, {22, 5}},
             {QVariantMap{{u"Hour"_s, qint64{3}}}, {3, 0}},
             {QVariantMap{{u"Hour"_s, u"4"_s}, {u"Minute"_s, qint64{99}}}, {4, 59}}}) {
        defaults.setObject(time.setting.name(), stored);
        EXPECT_EQ(app::scheduleTime(defaults, time), expected)
            << app::scheduleTime(defaults, time).toString().toStdString();
    }
}

TEST_F(ScheduleTest, FollowsItsSettingsWhileItRuns) {
    setTime(u"2027-06-01T12:00:00.300"_s);
    add({u"a"_s});
    download(u"a"_s)->pause();
    launch();
    scheduleQueuing({12, 0, 1});
    main.advance(1);
    EXPECT_EQ(status(u"a"_s), paused) << "less than a second ahead is tomorrow";
    scheduleQueuing({12, 0, 3});
    main.advance(1.7);
    EXPECT_EQ(status(u"a"_s), queued);
    download(u"a"_s)->pause();
    scheduleQueuing({12, 10});
    toggles().toggleScheduledQueuing();
    main.advance(86400);
    EXPECT_EQ(status(u"a"_s), paused) << "turned off";
    toggles().toggleScheduledQueuing();
    EXPECT_TRUE(controller->shouldQuit());
    main.advance(86400);
    EXPECT_EQ(status(u"a"_s), paused) << "after the end";
}

TEST_F(ScheduleTest, PausesWhatRunsOnlyIfToldTo) {
    setTime(u"2027-06-01T05:59:00"_s);
    add({u"a"_s, u"b"_s, u"c"_s});
    download(u"c"_s)->pause();
    for (const bool isRadical : {false, true}) {
        setStatus(*download(u"b"_s), engine::DQDownloadStatusDownloading);
        schedulePausing({6, 0}, isRadical);
        controller->automation().schedule().resetSchedule();
        main.advance(86400);
        EXPECT_EQ(status(u"a"_s), paused);
        EXPECT_EQ(status(u"b"_s), isRadical ? paused : engine::DQDownloadStatusDownloading);
    }
}

TEST_F(ScheduleTest, SwitchesDoAtOnceWhatTheyStandFor) {
    launch();
    add({u"a"_s, u"b"_s});
    end(*download(u"a"_s), engine::DQDownloadStatusDone);
    end(*download(u"b"_s), engine::DQDownloadStatusAborted);
    toggles().setAutoClearLemons(false);
    main.settle();
    EXPECT_EQ(queue().size(), 2);
    toggles().setAutoClearLemons(true);
    main.settle();
    EXPECT_EQ(queue().size(), 1);
    EXPECT_EQ(status(u"a"_s), engine::DQDownloadStatusDone);
    toggles().setAutoClearSuccesses(true);
    main.settle();
    EXPECT_EQ(queue().size(), 0);

    controller->allDone()._mayTriggerQuitOnAllDone = true;
    toggles().setAutoQuit(true);
    EXPECT_FALSE(controller->allDone()._mayTriggerQuitOnAllDone);
    toggles().toggleAcceleration();
    EXPECT_TRUE(engine::AccelerationSettings(defaults).accelerates());
}

TEST(ThrottleLimitText, ReadsWhateverIsTyped) {
    struct Case {
        const char* typed;
        const char* shown;
        qint64 bytes;
    };
    for (const Case& test : {Case{"250", "250", 250'000},
                             {"0", "1", 1000},
                             {"", "1", 1000},
                             {"abc", "1", 1000},
                             {"-5", "1", 1000},
                             {" 12.9 ", "12", 12'000},
                             {"5,000", "5000", 5'000'000}}) {
        const app::ThrottleLimitEntry entry =
            app::throttleLimitEntry(QString::fromLatin1(test.typed));
        EXPECT_EQ(entry.text, QString::fromLatin1(test.shown)) << test.typed;
        EXPECT_EQ(entry.bytesPerSecond, test.bytes) << test.typed;
    }
    EXPECT_GT(app::throttleLimitEntry(u"9"_s.repeated(40)).bytesPerSecond, 0);
    EXPECT_EQ(app::throttleLimitText(999), u"1"_s);
    EXPECT_EQ(app::throttleLimitText(123'456), u"123"_s);
    EXPECT_EQ(app::throttleLimitSuggestions().size(), 10);
}

}  // namespace
