#include "ui/list/stripe_motion.h"

#include <QWidget>
#include <chrono>
#include <utility>

#include "engine/settings.h"
#include "platform/base/user_defaults.h"
#include "ui/list/download_cell.h"

namespace ui {

using namespace std::chrono_literals;

namespace {

bool areAnimationsWanted() {
    return platform::standardDefaults().get(engine::settings::uselessAnimations);
}

}  // namespace

StripeMotion::StripeMotion(QWidget& canvas) : canvas_(canvas) {
    clock_.start();
    step_.setSingleShot(true);
    step_.setInterval(60ms);
    connect(&step_, &QTimer::timeout, this, [this] { canvas_.update(std::exchange(areas_, {})); });
}

int StripeMotion::offset() const {
    constexpr qint64 millisecondsPerPixel = 45;
    return areAnimationsWanted()
               ? static_cast<int>(clock_.elapsed() / millisecondsPerPixel % stripesPeriod)
               : 0;
}

void StripeMotion::noteStripes(const QRect& area) {
    if (!areAnimationsWanted())
        return;
    areas_ += area;
    if (!step_.isActive())
        step_.start();
}

}  // namespace ui
