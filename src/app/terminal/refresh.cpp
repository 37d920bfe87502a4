#include "app/terminal/refresh.h"

#include "platform/base/run_loop.h"

namespace app::terminal {

Refresh::Refresh(platform::RunLoop& loop, std::function<bool()> draw)
    : loop_(loop), draw_(std::move(draw)) {}

Refresh::~Refresh() {
    loop_.cancelAll(this);
}

void Refresh::request() {
    if (isRequested_)
        return;
    isRequested_ = true;
    const platform::Seconds sinceLast = loop_.clock().monotonic() - lastDrawing_;
    // What has ended before anybody could read it is not worth a flash on the screen: even after a
    // long silence the first drawing waits.
    schedule(sinceLast < interval ? interval - sinceLast : interval);
}

void Refresh::cancel() {
    loop_.cancelAll(this);
    isRequested_ = false;
}

void Refresh::schedule(platform::Seconds delay) {
    loop_.cancelAll(this);
    loop_.performAfter(this, "drawNow", delay, [this] { drawNow(); });
}

void Refresh::drawNow() {
    isRequested_ = false;
    lastDrawing_ = loop_.clock().monotonic();
    if (draw_() && !isRequested_)
        schedule(idleInterval);
}

}  // namespace app::terminal
