#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QHash>
#include <memory>
#include <vector>

#include "scripting/change_signals.h"
#include "scripting/commands.h"

namespace scripting {

/// The program as scripts and browsers meet it on the session bus: one object that answers the
/// interface of resources/dbus/com.tarnworks.Orlop.xml to processes of the same user. It waits for
/// nothing: a bus that is not there or does not answer costs no time. Main thread.
class Service final : public QDBusVirtualObject {
    Q_OBJECT

public:
    /// Null: there is no session bus.
    [[nodiscard]] static std::unique_ptr<Service> make(app::DQMainController& controller,
                                                       const QString& supportFolder);
    /// The controller has read its queue, and outlives it.
    Service(app::DQMainController& controller, const QString& supportFolder,
            const QDBusConnection& bus);
    ~Service() override;

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    /// What the bus says of a sender.
    enum class Sender { Asked, Ours };

    void requestName();
    void askFor(const QString& sender);
    void heardOf(const QString& sender, bool isOurs);
    void perform(const QDBusMessage& message);
    void performProperties(const QDBusMessage& message);

    QDBusConnection bus_;
    /// Null: the queue is saved for good, and what was done now would spoil that.
    std::unique_ptr<Commands> commands_;
    ChangeSignals signals_;
    QHash<QString, Sender> senders_;
    std::vector<QDBusMessage> waiting_;  ///< For what is asked of their senders.
};

}  // namespace scripting
