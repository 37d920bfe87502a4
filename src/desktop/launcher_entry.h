#pragma once

#include <QDBusConnection>
#include <QVariantMap>

#include "app/status/application_image.h"

namespace desktop {

/// What the program's entry in the desktop's task bar or dock shows, for those that read
/// com.canonical.Unity.LauncherEntry: a number, a bar and whether it wants to be looked at. The
/// others show the window's icon. Main thread.
class LauncherEntry {
public:
    LauncherEntry();
    /// Takes back what was shown.
    ~LauncherEntry();
    LauncherEntry(const LauncherEntry&) = delete;
    LauncherEntry& operator=(const LauncherEntry&) = delete;

    /// The number counts all that is unfinished.
    void show(const app::ApplicationImage& image);
    void setUrgent(bool urgent);

private:
    void update(const QVariantMap& properties);

    QDBusConnection bus_;
    bool isUrgent_ = false;
    bool hasShown_ = false;
};

}  // namespace desktop
