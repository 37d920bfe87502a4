#include "ui/art/appearance.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QPalette>

#include "ui/art/theme.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;
const QString group = u"org.freedesktop.appearance"_s;
const QString key = u"color-scheme"_s;
/// Of the setting: 0 no preference, 1 dark, 2 light.
constexpr uint prefersDarkValue = 1;

/// Portals wrap the value once or twice, by the method that was called.
uint unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value.toUInt();
}

}  // namespace

Appearance::Appearance(QObject* parent) : QObject(parent) {
    QDBusConnection::sessionBus().connect(service, path, interface, u"SettingChanged"_s, this,
                                          SLOT(settingChanged(QDBusMessage)));
    readColorScheme();
}

void Appearance::readColorScheme() {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, u"Read"_s);
    call << group << key;
    auto* watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        watcher->deleteLater();
        if (!reply.isError()) {
            apply(unwrapped(QVariant::fromValue(reply.value())) == prefersDarkValue);
        }
    });
}

void Appearance::settingChanged(const QDBusMessage& message) {
    const QVariantList arguments = message.arguments();
    if (arguments.size() == 3 && arguments[0] == group && arguments[1] == key) {
        apply(unwrapped(arguments[2]) == prefersDarkValue);
    }
}

void Appearance::apply(bool prefersDark) {
    if (prefersDark && !isDark(QApplication::palette())) {
        isOurs_ = true;
        QApplication::setPalette(darkPalette());
    } else if (!prefersDark && isOurs_) {
        isOurs_ = false;
        QApplication::setPalette(QPalette());
    }
}

}  // namespace ui
