#include "desktop/announcements/aih_listener.h"

#include <QDBusMessage>
#include <utility>

#include "desktop/announcements/announcement_bus.h"
#include "desktop/settings.h"
#include "platform/base/user_defaults.h"

namespace desktop {

AIHListener::AIHListener(const platform::UserDefaults& defaults, BaseIcon baseIcon,
                         const QDBusConnection& bus)
    : defaults_(defaults), baseIcon_(std::move(baseIcon)), bus_(bus) {}

AIHListener::~AIHListener() {
    setListeningBlock({});
}

void AIHListener::setListeningBlock(Listening listening) {
    _serialQueue.waitForDone();
    const bool wasListening = static_cast<bool>(_listeningBlock);
    _listeningBlock = std::move(listening);
    using namespace announcement_bus;
    if (!_listeningBlock) {
        if (wasListening) {
            bus_.disconnect(QString(), path, announcementInterface, posted, this,
                            SLOT(listen(QString)));
        }
        return;
    }
    if (!wasListening) {
        bus_.connect(QString(), path, announcementInterface, posted, this, SLOT(listen(QString)));
    }
    bus_.send(QDBusMessage::createSignal(path, requestInterface, posted));
}

void AIHListener::listen(const QString& transport) {
    if (transport.isEmpty() || defaults_.get(settings::disableListening)) {
        return;
    }
    _serialQueue.start([this, transport] {
        const auto received = receivedAnnouncement(transport, baseIcon_);
        if (received && _listeningBlock) {
            _listeningBlock(*received);
        }
    });
}

}  // namespace desktop
