#pragma once

#include <QComboBox>

#include "platform/base/user_defaults.h"

class QTimer;

namespace engine {
class Throttle;
}

namespace ui {

/// The bandwidth limit in thousands of bytes per second, typed or chosen. What is typed counts half
/// a second later or on leaving the field. Usable only while the limit is on.
class ThrottleField final : public QComboBox {
    Q_OBJECT

public:
    ThrottleField(platform::UserDefaults& defaults, engine::Throttle& throttle, QWidget* parent);

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void updateThrottleLimit();
    void takeOver();
    void followSettings();

    platform::UserDefaults& defaults_;
    engine::Throttle& throttle_;
    QTimer* pendingUpdate_;
    platform::Observation observation_;
};

}  // namespace ui
