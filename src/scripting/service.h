#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QHash>
#include <memory>
#include <vector>

#include "scripting/bus/bus_probe.h"
#include "scripting/change_signals.h"
#include "scripting/commands.h"
#include "scripting/launching.h"

namespace scripting {

/// The program as scripts and browsers meet it on the session bus: one object that answers the
/// interfaces of resources/dbus/com.tarnworks.Orlop.xml to processes of the same user. It waits for
/// nothing: a bus that is not there or does not answer costs no time. Main thread.
class Service final : public QDBusVirtualObject {
    Q_OBJECT

public:
    /// The controller has read its queue, and outlives it. To be met as soon as the bus speaks;
    /// what was handed over before counts from now on.
    Service(app::DQMainController& controller, const QString& supportFolder, Launches launches);
    ~Service() override;

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    /// What the bus says of a sender.
    enum class Sender { Asked, Ours };

    void connectToBus();
    void requestName();
    void askFor(const QString& sender);
    void heardOf(const QString& sender, bool isOurs);
    void perform(const QDBusMessage& message);
    void performProperties(const QDBusMessage& message);

    app::DQMainController& controller_;
    const Launching launching_;
    QDBusConnection bus_{QString()};  ///< Not connected before the bus has spoken.
    /// Null: the queue is saved for good, and what was done now would spoil that.
    std::unique_ptr<Commands> commands_;
    std::unique_ptr<ChangeSignals> signals_;
    QHash<QString, Sender> senders_;
    std::vector<QDBusMessage> waiting_;  ///< For what is asked of their senders.
    BusProbe probe_;
};

}  // namespace scripting
