#include "platform/files/mount_watcher.h"

#include <fcntl.h>

namespace platform {

MountWatcher::MountWatcher(const std::function<void()>& changed)
    : table_(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)) {
    if (!table_.isOpen())
        return;
    notifier_ = std::make_unique<QSocketNotifier>(table_.get(), QSocketNotifier::Exception);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [changed] { changed(); });
}

}  // namespace platform
