#pragma once

#include <QDBusConnection>
#include <QObject>

#include "desktop/announcements/announcement.h"
#include "platform/base/thread_pool.h"

namespace platform {
class UserDefaults;
}

namespace desktop {

/// Tells other programs of the same user how the program's icon looks, at each change and whenever
/// one of them asks. Main thread, which never waits; the work is done one after another on a thread
/// of its own.
class AIHAnnouncer final : public QObject {
    Q_OBJECT

public:
    /// The defaults outlive the announcer.
    explicit AIHAnnouncer(const platform::UserDefaults& defaults,
                          const QDBusConnection& bus = QDBusConnection::sessionBus());

    void announce(const Announcement& announcement);
    /// 0: back to the plain icon.
    void announceBadgeNumber(qint64 number);
    /// Null: back to the plain icon.
    void announceImage(const QImage& image);

private Q_SLOTS:
    void reannounce();

private:
    [[nodiscard]] bool isDisabled() const;
    void post() const;

    const platform::UserDefaults& defaults_;
    QDBusConnection bus_;
    QString _latestTransportString;  ///< Only touched by the queue's work.
    platform::ThreadPool _serialQueue{1};
};

}  // namespace desktop
