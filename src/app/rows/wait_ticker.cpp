#include "app/rows/wait_ticker.h"

#include <utility>

#include "engine/queue/queue_admission.h"

namespace app {

WaitTicker::WaitTicker(platform::RunLoop& loop, engine::QueueAdmission& admission,
                       std::function<void()> redraw)
    : admission_(admission), redraw_(std::move(redraw)), timer_(loop) {}

void WaitTicker::start() {
    constexpr platform::Seconds interval = 1;
    timer_.startUnlessActive(interval, [this] { tick(); });
}

void WaitTicker::tick() {
    redraw_();
    if (!admission_.refusedDownloads().empty())
        start();
}

}  // namespace app
