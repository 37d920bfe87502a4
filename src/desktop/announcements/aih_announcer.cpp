#include "desktop/announcements/aih_announcer.h"

#include <QDBusMessage>

#include "desktop/announcements/announcement_bus.h"
#include "desktop/settings.h"
#include "platform/base/user_defaults.h"

namespace desktop {

AIHAnnouncer::AIHAnnouncer(const platform::UserDefaults& defaults, const QDBusConnection& bus)
    : defaults_(defaults), bus_(bus) {
    bus_.connect(QString(), announcement_bus::path, announcement_bus::requestInterface,
                 announcement_bus::posted, this, SLOT(reannounce()));
}

bool AIHAnnouncer::isDisabled() const {
    return defaults_.get(settings::disableAnnouncing);
}

void AIHAnnouncer::announce(const Announcement& announcement) {
    if (isDisabled() || !bus_.isConnected()) {
        return;
    }
    _serialQueue.start([this, announcement] {
        if (const auto transport = transportString(announcement)) {
            _latestTransportString = *transport;
            post();
        }
    });
}

void AIHAnnouncer::announceBadgeNumber(qint64 number) {
    announce({.badge = QString::number(number)});
}

void AIHAnnouncer::announceImage(const QImage& image) {
    announce({.image = image});
}

void AIHAnnouncer::reannounce() {
    if (!isDisabled()) {
        _serialQueue.start([this] { post(); });
    }
}

void AIHAnnouncer::post() const {
    bus_.send(QDBusMessage::createSignal(announcement_bus::path,
                                         announcement_bus::announcementInterface,
                                         announcement_bus::posted)
              << _latestTransportString);
}

}  // namespace desktop
