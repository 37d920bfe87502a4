#include "scripting/bus/bus_probe.h"

#include <unistd.h>

#include <QTimer>
#include <QUrl>
#include <utility>

#include "scripting/bus/bus_names.h"

namespace scripting {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Where the bus listens (D-Bus Specification, "Server Addresses"): the first of what is given.
struct Place {
    QString name;
    bool isAbstract = false;
};

/// An empty name: it is no socket of this machine, and cannot be probed.
Place placeOfBus() {
    QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (address.isEmpty()) {
        return {qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus"_s};
    }
    address = address.section(u';', 0, 0);
    if (!address.startsWith(u"unix:"_s)) {
        return {};
    }
    for (const QString& entry : address.sliced(5).split(u',')) {
        const QString key = entry.section(u'=', 0, 0);
        if (key == u"path" || key == u"abstract") {
            return {QUrl::fromPercentEncoding(entry.section(u'=', 1).toUtf8()), key == u"abstract"};
        }
    }
    return {};
}

/// How every client begins, to which the bus answers with a line whatever it thinks of it.
QByteArray greeting() {
    return QByteArray(1, '\0') + "AUTH EXTERNAL " + QByteArray::number(::getuid()).toHex() + "\r\n";
}

void connectTo(QLocalSocket& socket, const Place& place) {
    if (place.isAbstract) {
        socket.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
    }
    socket.connectToServer(place.name);
}

}  // namespace

BusProbe::BusProbe(std::function<void()> speaks) : speaks_(std::move(speaks)) {
    if (!bus::isThere()) {
        return;
    }
    connect(&socket_, &QLocalSocket::connected, this, &BusProbe::greet);
    connect(&socket_, &QLocalSocket::readyRead, this, &BusProbe::hear);
    const Place place = placeOfBus();
    if (place.name.isEmpty()) {
        // Whether it speaks shows when it is spoken to.
        QTimer::singleShot(0, this, [this] { std::exchange(speaks_, {})(); });
    } else {
        connectTo(socket_, place);
    }
}

void BusProbe::greet() {
    socket_.write(greeting());
}

void BusProbe::hear() {
    if (socket_.canReadLine() && speaks_) {
        // A bus puts up with a client that never comes in for a while, and complains then.
        socket_.abort();
        std::exchange(speaks_, {})();
    }
}

bool BusProbe::waitUntilItSpeaks() {
    constexpr int patience = 5000;
    const Place place = placeOfBus();
    if (!bus::isThere() || place.name.isEmpty()) {
        return bus::isThere();
    }
    QLocalSocket socket;
    connectTo(socket, place);
    return socket.waitForConnected(patience) && socket.write(greeting()) > 0 &&
           (socket.bytesAvailable() > 0 || socket.waitForReadyRead(patience));
}

}  // namespace scripting
