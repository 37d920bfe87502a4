#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "platform/files/descriptor.h"

namespace platform {

/// Tells when a file system was mounted or unmounted (proc(5), /proc/PID/mountinfo). On the thread
/// that made it, which has an event loop of Qt.
class MountWatcher {
public:
    explicit MountWatcher(const std::function<void()>& changed);

private:
    Descriptor table_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace platform
