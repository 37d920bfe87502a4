#pragma once

#include <QDBusConnection>
#include <QObject>

namespace desktop {

/// Whether the desktop shows status items: what org.kde.StatusNotifierWatcher on the bus says
/// (freedesktop.org, StatusNotifierItem). Main thread; never waits for the bus.
class StatusNotifierHost final : public QObject {
    Q_OBJECT

public:
    explicit StatusNotifierHost(const QDBusConnection& bus = QDBusConnection::sessionBus());

    enum class State { Unknown, Absent, Present };
    [[nodiscard]] State state() const { return state_; }

Q_SIGNALS:
    /// Also when one watcher took the place of another, which knows of no items.
    void changed();

private Q_SLOTS:
    void ask();

private:
    void setState(State state, bool isAnother);
    void ownerChanged(const QString& newOwner);

    QDBusConnection bus_;
    State state_ = State::Unknown;
    bool isAnother_ = false;
    /// Of the question that was asked last.
    quint64 question_ = 0;
};

}  // namespace desktop
