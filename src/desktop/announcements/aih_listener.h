#pragma once

#include <QDBusConnection>
#include <QObject>
#include <functional>

#include "desktop/announcements/announcement.h"
#include "platform/base/thread_pool.h"

namespace platform {
class UserDefaults;
}

namespace desktop {

/// Hears how the icons of other programs of the same user look. Orlop itself listens to nobody;
/// this is for programs that mirror icons, and says how the format is read. Main thread.
class AIHListener final : public QObject {
    Q_OBJECT

public:
    /// Called on a thread of the listener's own, one announcement after another.
    using Listening = std::function<void(const ReceivedAnnouncement&)>;

    /// The defaults outlive the listener. `baseIcon` is called on the listener's thread.
    AIHListener(const platform::UserDefaults& defaults, BaseIcon baseIcon,
                const QDBusConnection& bus = QDBusConnection::sessionBus());
    ~AIHListener() override;

    /// Asks all programs to speak up. Null: hears nothing any more. Returns when what was heard
    /// before has been dealt with.
    void setListeningBlock(Listening listening);

private Q_SLOTS:
    void listen(const QString& transport);

private:
    const platform::UserDefaults& defaults_;
    const BaseIcon baseIcon_;
    QDBusConnection bus_;
    Listening _listeningBlock;  ///< Changed only while the queue has nothing to do.
    platform::ThreadPool _serialQueue{1};
};

}  // namespace desktop
