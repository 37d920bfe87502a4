#include "platform/session/workspace.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFileInfo>

#include "platform/net/url.h"
#include "platform/session/gio.h"
#include "platform/session/launch_context.h"

namespace platform {

using namespace Qt::Literals::StringLiterals;

bool openURL(const Url& url) {
    const Gio* const gio = Gio::library();
    return gio != nullptr && gio->launchDefaultForUri(url.absoluteString().toUtf8().constData(),
                                                      LaunchContext(*gio).get(), nullptr) != FALSE;
}

bool revealFile(const QString& path) {
    constexpr int timeout = 3000;
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
        u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    call << QStringList{Url::fromFilePath(path).absoluteString()} << QString();
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, timeout);
    return reply.type() == QDBusMessage::ReplyMessage ||
           openURL(Url::fromFilePath(QFileInfo(path).absolutePath()));
}

}  // namespace platform
