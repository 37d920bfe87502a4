#include "browser/bus_service.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <algorithm>

#include "platform/files/files.h"

namespace browser {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString sessionBus = u"Session bus"_s;

/// The user's own comes first.
QStringList descriptionPaths() {
    QStringList paths = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    for (QString& path : paths)
        path += "/dbus-1/services/com.tarnworks.Orlop.service"_L1;
    return paths;
}

bool leadsTo(const QString& program, const QString& descriptionPath) {
    constexpr qint64 longest = 64 << 10;
    const QByteArray text = platform::readFile(descriptionPath, longest).data;
    return std::ranges::any_of(text.split('\n'), [&](const QByteArray& line) {
        const QStringList command = line.startsWith("Exec=")
                                        ? QProcess::splitCommand(QString::fromUtf8(line.mid(5)))
                                        : QStringList();
        return !command.isEmpty() && QFileInfo(command.first()).canonicalFilePath() ==
                                         QFileInfo(program).canonicalFilePath();
    });
}

/// What can be quoted neither as an entry's value nor as a word of a command alone.
bool canBeNamed(const QString& program) {
    return std::ranges::none_of(program,
                                [](QChar c) { return c < u' ' || u"\"`$\\"_s.contains(c); });
}

QByteArray description(const QString& program) {
    QFile file(u":/dbus/com.tarnworks.Orlop.service.in"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll().replace("@CMAKE_INSTALL_FULL_BINDIR@/orlop",
                                  '"' + program.toUtf8() + '"');
}

/// Buses look by themselves only into folders that were there when they began.
void haveServicesReadAgain() {
    constexpr int patience = 2000;
    QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"ReloadConfig"_s),
        QDBus::Block, patience);
}

}  // namespace

void installBusService(const QString& program, InstallReport& report) {
    if (!QFileInfo(program).isExecutable())
        return;
    const QStringList paths = descriptionPaths();
    const bool isInstalled = std::any_of(paths.begin() + 1, paths.end(), [&](const QString& path) {
        return leadsTo(program, path);
    });
    if (isInstalled)
        report.remove(sessionBus, paths.first());
    else if (canBeNamed(program))
        report.write(sessionBus, paths.first(), description(program));
    else
        report.fail(u"%1: cannot be told of %2, whose path has \", `, $ or \\ in it"_s.arg(
            sessionBus, program));
    haveServicesReadAgain();
}

void uninstallBusService(InstallReport& report) {
    report.remove(sessionBus, descriptionPaths().first());
    haveServicesReadAgain();
}

}  // namespace browser
