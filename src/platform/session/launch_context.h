#pragma once

#include "platform/session/gio.h"

namespace platform {

/// With what GIO is to start other programs: the environment without what is for our GIO alone.
class LaunchContext {
public:
    explicit LaunchContext(const Gio& gio);
    ~LaunchContext();
    LaunchContext(const LaunchContext&) = delete;
    LaunchContext& operator=(const LaunchContext&) = delete;

    [[nodiscard]] GAppLaunchContext* get() const { return context_; }

private:
    const Gio& gio_;
    GAppLaunchContext* const context_;
};

}  // namespace platform
