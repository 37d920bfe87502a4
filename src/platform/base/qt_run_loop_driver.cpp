#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <cmath>

#include "platform/base/run_loop.h"

namespace platform {

class QtRunLoopDriver::Private final : public QObject {
public:
    explicit Private(RunLoop& loop) : loop_(loop) {
        timer_.setSingleShot(true);
        timer_.setTimerType(Qt::PreciseTimer);
        connect(&timer_, &QTimer::timeout, this, &Private::turn);
        clockWaker_ = loop_.clock().addWaker([this] { wake(); });
        loop_.setWaker([this] { wake(); });
        wake();
    }

    ~Private() override {
        loop_.setWaker({});
        loop_.clock().removeWaker(clockWaker_);
    }

    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    /// Any thread. One event is under way at most, however many calls are posted.
    void wake() {
        if (!awake_.exchange(true))
            QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

protected:
    void customEvent(QEvent*) override {
        awake_ = false;
        turn();
    }

private:
    void turn() {
        // A call may open a modal window: its event loop must go on with what this turn leaves.
        timer_.start(0);
        loop_.runDue();
        arm();
    }

    void arm() {
        const std::optional<Seconds> deadline = loop_.nextDeadline();
        const Seconds wait = deadline ? loop_.clock().sleepUntil(*deadline) : -1;
        if (wait < 0) {
            timer_.stop();
            return;
        }
        constexpr Seconds longest = 86'400;
        timer_.start(static_cast<int>(std::ceil(std::min(wait, longest) * 1000)));
    }

    RunLoop& loop_;
    QTimer timer_;
    int clockWaker_ = 0;
    std::atomic<bool> awake_ = false;
};

QtRunLoopDriver::QtRunLoopDriver(RunLoop& loop) : private_(std::make_unique<Private>(loop)) {}

QtRunLoopDriver::~QtRunLoopDriver() = default;

}  // namespace platform
