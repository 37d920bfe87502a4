#include "desktop/launcher_entry.h"

#include <QDBusMessage>
#include <algorithm>

namespace desktop {

using namespace Qt::Literals::StringLiterals;

LauncherEntry::LauncherEntry() : bus_(QDBusConnection::sessionBus()) {}

LauncherEntry::~LauncherEntry() {
    if (hasShown_) {
        update({{u"count-visible"_s, false}, {u"progress-visible"_s, false}, {u"urgent"_s, false}});
    }
}

void LauncherEntry::show(const app::ApplicationImage& image) {
    const qint64 count = image.upperCount + image.lowerCount;
    update({{u"count"_s, count},
            {u"count-visible"_s, count > 0},
            {u"progress"_s, std::clamp(image.fraction, 0.0, 1.0)},
            {u"progress-visible"_s, image.fraction >= 0}});
}

void LauncherEntry::setUrgent(bool urgent) {
    if (isUrgent_ != urgent) {
        isUrgent_ = urgent;
        update({{u"urgent"_s, urgent}});
    }
}

void LauncherEntry::update(const QVariantMap& properties) {
    hasShown_ = true;
    QDBusMessage signal =
        QDBusMessage::createSignal(u"/com/tarnworks/Orlop/LauncherEntry"_s,
                                   u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s);
    signal << u"application://com.tarnworks.Orlop.desktop"_s << properties;
    bus_.send(signal);
}

}  // namespace desktop
