#include "app/terminal/refresh.h"

namespace app::terminal {

Refresh::Refresh(platform::RunLoop& loop, std::function<bool()> draw)
    : clock_(loop.clock()), timer_(loop), draw_(std::move(draw)) {}

void Refresh::request() {
    if (isRequested_)
        return;
    isRequested_ = true;
    const platform::Seconds sinceLast = clock_.monotonic() - lastDrawing_;
    // What has ended before anybody could read it is not worth a flash on the screen: even after a
    // long silence the first drawing waits.
    schedule(sinceLast < interval ? interval - sinceLast : interval);
}

void Refresh::cancel() {
    timer_.cancel();
    isRequested_ = false;
}

void Refresh::schedule(platform::Seconds delay) {
    timer_.start(delay, [this] { drawNow(); });
}

void Refresh::drawNow() {
    isRequested_ = false;
    lastDrawing_ = clock_.monotonic();
    if (draw_() && !isRequested_)
        schedule(idleInterval);
}

}  // namespace app::terminal
