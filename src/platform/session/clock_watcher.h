#pragma once

#include <QObject>
#include <functional>
#include <memory>

QT_FORWARD_DECLARE_CLASS(QSocketNotifier)

namespace platform {

/// Tells when the system's clock is set, by a timer that the kernel cancels then
/// (timerfd_create(2), TFD_TIMER_CANCEL_ON_SET). Runs in Qt's event loop of its thread.
class ClockWatcher final : public QObject {
public:
    explicit ClockWatcher(std::function<void()> changed);
    ~ClockWatcher() override;

private:
    void arm();
    void wasCancelled();

    std::function<void()> changed_;
    int timer_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace platform
