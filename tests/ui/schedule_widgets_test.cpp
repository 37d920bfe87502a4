#include <gtest/gtest.h>

#include <QCheckBox>
#include <QTest>
#include <QTimeEdit>

#include "app/core_fixture.h"
#include "app/settings.h"
#include "engine/admission/throttle.h"
#include "engine/settings.h"
#include "http/http_session.h"
#include "ui/schedule/schedule_settings.h"
#include "ui/schedule/throttle_field.h"

using namespace Qt::Literals::StringLiterals;

namespace {

class ScheduleWidgetsTest : public Core {
protected:
    http::HTTPSession session{main.clock};
};

TEST_F(ScheduleWidgetsTest, TimesShowWhileTheirSwitchesAreOn) {
    ui::ScheduleSettings page(*controller, defaults, nullptr);
    auto* pausing = page.findChild<QCheckBox*>(u"scheduledPausingSwitch"_s);
    auto* radical = page.findChild<QCheckBox*>(u"scheduledPausingRadicalSwitch"_s);
    auto* time = page.findChild<QTimeEdit*>(u"scheduledPausingTimePicker"_s);
    EXPECT_FALSE(time->isVisibleTo(&page));
    pausing->click();
    EXPECT_TRUE(defaults.get(app::settings::schedulePause));
    EXPECT_TRUE(time->isVisibleTo(&page));
    EXPECT_EQ(time->time(), QTime(6, 0));
    time->setTime({7, 30, 5});
    EXPECT_EQ(app::scheduleTime(defaults, app::scheduledPausingTime()), QTime(7, 30, 5));
    radical->click();
    EXPECT_TRUE(defaults.get(app::settings::schedulePauseRadical));

    app::setScheduleTime(defaults, {22, 15}, app::scheduledPausingTime());
    EXPECT_EQ(time->time(), QTime(22, 15)) << "changed elsewhere";
    defaults.set(app::settings::schedulePause, false);
    EXPECT_FALSE(pausing->isChecked());
    EXPECT_TRUE(radical->isHidden());
}

TEST_F(ScheduleWidgetsTest, TheLimitTypedCountsAfterAPauseOrOnLeaving) {
    engine::Throttle::setThrottled(false);
    ui::ThrottleField field(defaults, nullptr);
    EXPECT_FALSE(field.isEnabled());
    engine::Throttle::setThrottled(true);
    EXPECT_TRUE(field.isEnabled());
    EXPECT_EQ(field.currentText(), u"100"_s);
    field.show();
    field.setEditText(u"2"_s);
    field.setEditText(u"25x"_s);
    EXPECT_EQ(engine::Throttle::throttleLimit(), 100'000) << "typing goes on";
    EXPECT_TRUE(QTest::qWaitFor([] { return engine::Throttle::throttleLimit() == 1000; }, 10'000));
    EXPECT_EQ(field.currentText(), u"1"_s);
    field.setEditText(u"250"_s);
    field.hide();
    EXPECT_EQ(engine::Throttle::throttleLimit(), 250'000);
    engine::Throttle::setThrottled(false);
}

}  // namespace
