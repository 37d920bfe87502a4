#pragma once

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QVariantMap>

#include "app/main_controller.h"
#include "platform/base/timer.h"

namespace scripting {

/// Tells the bus what happens to the downloads, at most ten times a second and only what is
/// another. Main thread.
class ChangeSignals {
public:
    /// The controller outlives it.
    ChangeSignals(app::DQMainController& controller, const QDBusConnection& bus);

    [[nodiscard]] quint32 runningCount() const;

private:
    void tellSoon();
    void tell();
    void tellMembership();
    void tellChanges();
    void tellRunningCount();
    void send(const QString& signal, const QVariant& argument);

    app::DQMainController& controller_;
    QDBusConnection bus_;
    /// What was told last, by identity.
    QHash<QString, QVariantMap> told_;
    std::vector<std::weak_ptr<engine::DQDownload>> changed_;
    bool hasQueueChanged_ = true;
    quint32 toldCount_ = 0;
    platform::Timer telling_;
    QObject listener_;
};

}  // namespace scripting
