#include "platform/files/document_portal.h"

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <sys/xattr.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QFile>
#include <QMap>
#include <QRegularExpression>

#include "platform/files/files.h"
#include "platform/session/flatpak.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {
namespace {

using HostPaths = QMap<QString, QByteArray>;

constexpr int patienceWithPortal = 1000;  // Milliseconds.

/// Newer portals say it of the file itself.
QString hostPathAttribute(const QString& path) {
    QByteArray value(PATH_MAX, '\0');
    const ssize_t length =
        ::getxattr(QFile::encodeName(path).constData(), "user.document-portal.host-path",
                   value.data(), static_cast<std::size_t>(value.size()));
    if (length <= 0)
        return {};
    value.truncate(length);
    while (value.endsWith('\0'))
        value.chop(1);
    return QFile::decodeName(value);
}

QString hostPathOfIdentifier(const QString& identifier) {
    qDBusRegisterMetaType<HostPaths>();
    QDBusMessage question = QDBusMessage::createMethodCall(
        u"org.freedesktop.portal.Documents"_s, u"/org/freedesktop/portal/documents"_s,
        u"org.freedesktop.portal.Documents"_s, u"GetHostPaths"_s);
    question << QStringList(identifier);
    const QDBusReply<HostPaths> answer =
        QDBusConnection::sessionBus().call(question, QDBus::Block, patienceWithPortal);
    if (!answer.isValid())
        return {};
    QByteArray path = answer.value().value(identifier);
    while (path.endsWith('\0'))
        path.chop(1);
    return QFile::decodeName(path);
}

}  // namespace

QString hostPathOfDocument(const QString& path) {
    static const QRegularExpression document(
        uR"(\A/run/(?:flatpak|user/[0-9]+)/doc/([0-9a-f]+)/([^/]+)(/.*)?\z)"_s);
    const QRegularExpressionMatch match = document.match(path);
    if (!match.hasMatch())
        return {};
    QString host = hostPathAttribute(path);
    if (host.isEmpty()) {
        host = hostPathOfIdentifier(match.captured(1));
        if (!host.isEmpty())
            host += match.captured(3);
    }
    return host.startsWith(u'/') ? host : QString();
}

bool isOfSandboxAlone(const QString& path) {
    static const bool isRootInMemory = [] {
        struct statfs root {};
        return isInFlatpak() && ::statfs("/", &root) == 0 && root.f_type == TMPFS_MAGIC;
    }();
    if (!isRootInMemory)
        return false;
    struct stat root {
    }, place{};
    return ::stat("/", &root) == 0 && ::stat(QFile::encodeName(path).constData(), &place) == 0 &&
           place.st_dev == root.st_dev;
}

}  // namespace platform
