#include "platform/session/workspace.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>

#include "platform/base/log.h"
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

namespace {

bool openFolderOf(const QString& path) {
    return openURL(Url::fromFilePath(QFileInfo(path).absolutePath()));
}

/// A file manager that is slow to start may still show it.
bool mayStillCome(const QDBusError& error) {
    return error.type() == QDBusError::NoReply || error.type() == QDBusError::TimedOut ||
           error.type() == QDBusError::Timeout;
}

}  // namespace

bool revealFile(const QString& path) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return openFolderOf(path);
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
        u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    call << QStringList{Url::fromFilePath(path).absoluteString()} << QString();
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), qApp);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, path] {
        if (watcher->isError() && !mayStillCome(watcher->error()) && !openFolderOf(path))
            log(u"no file manager shows <%1>: %2"_s.arg(path, watcher->error().message()));
        watcher->deleteLater();
    });
    return true;
}

}  // namespace platform
