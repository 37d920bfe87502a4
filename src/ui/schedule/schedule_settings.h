#pragma once

#include <QWidget>

#include "app/schedule/scheduled_time.h"
#include "platform/base/user_defaults.h"

class QCheckBox;
class QTimeEdit;

namespace app {
class DQMainController;
}

namespace ui {

/// Whether and when everything is queued and paused every day. A time shows only while its switch
/// is on. Follows the settings.
class ScheduleSettings final : public QWidget {
    Q_OBJECT

public:
    ScheduleSettings(app::DQMainController& controller, platform::UserDefaults& defaults,
                     QWidget* parent);

private:
    QTimeEdit* addTimePicker(const app::ScheduledTime& time, const QCheckBox& owner);
    void followSettings();
    void showTime(QTimeEdit& picker, const app::ScheduledTime& time) const;

    app::DQMainController& controller_;
    platform::UserDefaults& defaults_;
    QCheckBox* scheduledQueuingSwitch = nullptr;
    QTimeEdit* scheduledQueuingTimePicker = nullptr;
    QCheckBox* scheduledPausingSwitch = nullptr;
    QTimeEdit* scheduledPausingTimePicker = nullptr;
    QCheckBox* scheduledPausingRadicalSwitch = nullptr;
    platform::Observation observation_;
};

}  // namespace ui
