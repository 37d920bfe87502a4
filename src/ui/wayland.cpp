#include "ui/wayland.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QByteArray>
#include <QDeadlineTimer>
#include <QScopeGuard>
#include <array>
#include <cstring>

namespace ui::wayland {
namespace {

// A message is the number of an object, then its own size and what it is called by, then its
// arguments, all in words of 32 bits in the machine's order.
constexpr uint32_t display = 1, registry = 2, sync = 3;
constexpr uint32_t requestSync = 0, requestRegistry = 1;
constexpr uint32_t eventGlobal = 0;
constexpr qsizetype headerSize = 8;

/// -1: nobody listens there.
int connected() {
    const QByteArray name = qgetenv("WAYLAND_DISPLAY");
    const QByteArray path = name.startsWith('/') ? name : qgetenv("XDG_RUNTIME_DIR") + '/' + name;
    sockaddr_un address{};
    if (name.isEmpty() || path.size() >= static_cast<qsizetype>(sizeof address.sun_path)) {
        return -1;
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket >= 0 &&
        ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(socket);
        return -1;
    }
    return socket;
}

uint32_t wordAt(const QByteArray& bytes, qsizetype at) {
    uint32_t word = 0;
    std::memcpy(&word, bytes.constData() + at, sizeof word);
    return word;
}

/// Takes whole events off the front. True: the compositor has told all.
bool readEvents(QByteArray& bytes, QByteArrayList& found) {
    while (bytes.size() >= headerSize) {
        const uint32_t object = wordAt(bytes, 0);
        const auto size = static_cast<qsizetype>(wordAt(bytes, 4) >> 16);
        const uint32_t event = wordAt(bytes, 4) & 0xffff;
        if (object == sync) {
            return true;
        }
        if (size < headerSize || bytes.size() < size) {
            return false;
        }
        // Its number, the length of the name with the NUL at its end, the name, its version.
        constexpr qsizetype lengthAt = headerSize + 4, nameAt = headerSize + 8;
        if (object == registry && event == eventGlobal && size > nameAt) {
            const auto length = static_cast<qsizetype>(wordAt(bytes, lengthAt));
            if (length > 0 && length <= size - nameAt) {
                found.append(bytes.mid(nameAt, length - 1));
            }
        }
        bytes.remove(0, size);
    }
    return false;
}

}  // namespace

std::optional<QByteArrayList> interfaces() {
    const int socket = connected();
    if (socket < 0) {
        return {};
    }
    const auto closing = qScopeGuard([socket] { ::close(socket); });
    constexpr uint32_t size = 12U << 16;
    const std::array<uint32_t, 6> requests{display, size | requestRegistry, registry,
                                           display, size | requestSync,     sync};
    if (::send(socket, requests.data(), sizeof requests, MSG_NOSIGNAL) != sizeof requests) {
        return {};
    }
    QByteArrayList found;
    QByteArray bytes;
    const QDeadlineTimer deadline(1000);
    constexpr qsizetype most = 1 << 20;
    while (!deadline.hasExpired() && bytes.size() < most) {
        pollfd ready{socket, POLLIN, 0};
        std::array<char, 4096> block{};
        if (::poll(&ready, 1, static_cast<int>(deadline.remainingTime())) <= 0) {
            continue;
        }
        const ssize_t count = ::recv(socket, block.data(), block.size(), 0);
        if (count <= 0) {
            break;
        }
        bytes.append(block.data(), count);
        if (readEvents(bytes, found)) {
            return found;
        }
    }
    return {};
}

}  // namespace ui::wayland
