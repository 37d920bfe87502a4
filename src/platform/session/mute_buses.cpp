#include "platform/session/mute_buses.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <QByteArray>
#include <QElapsedTimer>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include "platform/base/log.h"
#include "platform/files/descriptor.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {
namespace {

constexpr int patienceMilliseconds = 500;

/// How it took to being greeted. One that is not there is noticed by everybody at once; one that
/// does not even take connections answers nobody.
enum class Greeting { Absent, Refused, Sent };

struct Bus {
    const char* variable;
    QByteArray address;
    Descriptor socket{};
    Greeting greeting = Greeting::Absent;
};

QByteArray sessionAddress() {
    const QByteArray named = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    return named.isEmpty() && !folder.isEmpty() ? "unix:path=" + folder + "/bus" : named;
}

QByteArray systemAddress() {
    const QByteArray named = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    return named.isEmpty() ? "unix:path=/run/dbus/system_bus_socket" : named;
}

/// Of the first of several addresses (D-Bus specification, "Server Addresses"), with the NUL of an
/// abstract one. Empty: it is no socket of this machine.
QByteArray socketName(const QByteArray& addresses) {
    const QByteArray address = addresses.split(';').front();
    if (!address.startsWith("unix:"))
        return {};
    for (const QByteArray& part : address.mid(5).split(',')) {
        const qsizetype equals = part.indexOf('=');
        const QByteArray value = QByteArray::fromPercentEncoding(part.mid(equals + 1));
        if (part.startsWith("path="))
            return value;
        if (part.startsWith("abstract="))
            return QByteArray(1, '\0') + value;
    }
    return {};
}

Greeting greet(const QByteArray& name, Descriptor& socket) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name.isEmpty() || static_cast<std::size_t>(name.size()) >= sizeof(address.sun_path))
        return Greeting::Absent;
    std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) +
                                               static_cast<std::size_t>(name.size()) +
                                               (name.startsWith('\0') ? 0 : 1));
    socket = Descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    // Whoever takes nothing from a full queue would hold us up in here.
    constexpr timeval patience{.tv_sec = 0, .tv_usec = patienceMilliseconds * 1000L};
    setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof(patience));
    if (connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), length) != 0)
        return errno == EAGAIN ? Greeting::Refused : Greeting::Absent;
    const QByteArray greeting =
        QByteArray(1, '\0') + "AUTH EXTERNAL " + QByteArray::number(geteuid()).toHex() + "\r\n";
    const bool isSent =
        send(socket.get(), greeting.constData(), static_cast<std::size_t>(greeting.size()),
             MSG_NOSIGNAL) == greeting.size();
    return isSent ? Greeting::Sent : Greeting::Absent;
}

}  // namespace

QStringList leaveMuteBusesAlone() {
    QStringList mute;
    std::array<Bus, 2> buses{
        Bus{.variable = "DBUS_SESSION_BUS_ADDRESS", .address = sessionAddress()},
        Bus{.variable = "DBUS_SYSTEM_BUS_ADDRESS", .address = systemAddress()}};
    for (Bus& bus : buses)
        bus.greeting = greet(socketName(bus.address), bus.socket);
    QElapsedTimer timer;
    timer.start();
    for (Bus& bus : buses) {
        pollfd answer{bus.socket.get(), POLLIN, 0};
        const int left = std::max(patienceMilliseconds - static_cast<int>(timer.elapsed()), 0);
        if (bus.greeting == Greeting::Absent ||
            (bus.greeting == Greeting::Sent && poll(&answer, 1, left) == 1))
            continue;
        qputenv(bus.variable, "disabled:");
        mute.append(QString::fromLatin1(bus.variable));
    }
    return mute;
}

void logMuteBuses(const QStringList& variables) {
    for (const QString& variable : variables)
        log(u"going on without the bus of %1, which does not answer"_s.arg(variable),
            LogLevel::Warning);
}

}  // namespace platform
