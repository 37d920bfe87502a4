#include "support/socket_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>

namespace support {

namespace {

sockaddr_in loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

bool wouldBlock() {
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

}  // namespace

Peer::Peer(int socket, int stopSignal) : socket_(socket), stopSignal_(stopSignal) {
    const int on = 1;
    ::setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

Peer::~Peer() {
    ::close(socket_);
}

bool Peer::waitFor(short events, int timeoutMilliseconds) const {
    std::array<pollfd, 2> watched{{{socket_, events, 0}, {stopSignal_, POLLIN, 0}}};
    const int count = ::poll(watched.data(), watched.size(), timeoutMilliseconds);
    return watched[1].revents == 0 && !isDropped_ && (count > 0 || timeoutMilliseconds >= 0);
}

long Peer::readSome(char* buffer, qsizetype maximum) {
    for (;;) {
        const ssize_t got = ::recv(socket_, buffer, static_cast<std::size_t>(maximum), 0);
        if (got >= 0 || !wouldBlock() || !waitFor(POLLIN))
            return got;
    }
}

long Peer::writeSome(const char* bytes, qsizetype count) {
    for (;;) {
        const ssize_t sent = ::send(socket_, bytes, static_cast<std::size_t>(count), MSG_NOSIGNAL);
        if (sent >= 0 || !wouldBlock() || !waitFor(POLLOUT))
            return sent;
    }
}

QByteArray Peer::read(qsizetype maximum) {
    QByteArray buffer(maximum, Qt::Uninitialized);
    const long got = isDropped_ ? 0 : readSome(buffer.data(), maximum);
    buffer.truncate(std::max(0L, got));
    return buffer;
}

QByteArray Peer::readHead() {
    QByteArray head;
    while (!head.endsWith("\r\n\r\n")) {
        const QByteArray more = read();
        if (more.isEmpty())
            return {};
        head += more;
    }
    return head;
}

bool Peer::write(const char* bytes, qsizetype count) {
    while (count > 0) {
        const long sent = isDropped_ ? 0 : writeSome(bytes, count);
        if (sent <= 0)
            return false;
        bytes += sent;
        count -= sent;
    }
    return true;
}

bool Peer::pause(std::chrono::milliseconds duration) {
    const auto end = std::chrono::steady_clock::now() + duration;
    for (;;) {
        const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(
            end - std::chrono::steady_clock::now());
        if (rest.count() <= 0)
            return true;
        std::array<pollfd, 2> watched{{{socket_, POLLRDHUP, 0}, {stopSignal_, POLLIN, 0}}};
        if (::poll(watched.data(), watched.size(), static_cast<int>(rest.count())) > 0)
            return false;
    }
}

void Peer::relayTo(int port) {
    const int other = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(port);
    if (::connect(other, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        std::array<char, 65536> buffer{};
        std::array<pollfd, 3> watched{
            {{socket_, POLLIN, 0}, {other, POLLIN, 0}, {stopSignal_, POLLIN, 0}}};
        bool goesOn = true;
        while (goesOn && ::poll(watched.data(), watched.size(), -1) > 0 && !watched[2].revents) {
            if (watched[0].revents) {
                const ssize_t got = ::recv(socket_, buffer.data(), buffer.size(), 0);
                goesOn = got > 0 && ::send(other, buffer.data(), static_cast<std::size_t>(got),
                                           MSG_NOSIGNAL) == got;
            } else if (watched[1].revents) {
                const ssize_t got = ::recv(other, buffer.data(), buffer.size(), 0);
                goesOn = got > 0 && write(buffer.data(), got);
            }
        }
    }
    ::close(other);
}

void Peer::resetOnClose() {
    const linger atOnce{1, 0};
    ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

void Peer::drop() {
    isDropped_ = true;
    ::shutdown(socket_, SHUT_RDWR);
}

SocketServer::SocketServer(Serve serve) : serve_(std::move(serve)) {
    listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    stopSignal_ = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    if (::bind(listener_, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::listen(listener_, SOMAXCONN) != 0 ||
        ::getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        std::abort();  // No loopback, no tests.
    port_ = ntohs(address.sin_port);
    acceptor_ = std::thread([this] { accept(); });
}

SocketServer::~SocketServer() {
    stop();
    ::close(stopSignal_);
}

void SocketServer::stop() {
    if (isStopping_.exchange(true))
        return;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(stopSignal_, &one, sizeof one);
    acceptor_.join();
    ::close(listener_);
    dropConnections();
    for (Connection& connection : connections_)
        connection.thread.join();
    connections_.clear();
}

void SocketServer::accept() {
    std::array<pollfd, 2> watched{{{listener_, POLLIN, 0}, {stopSignal_, POLLIN, 0}}};
    while (!isStopping_) {
        ::poll(watched.data(), watched.size(), -1);
        const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (socket >= 0)
            start(socket);
    }
}

void SocketServer::start(int socket) {
    const std::lock_guard guard(lock_);
    reap();
    Connection& connection = connections_.emplace_back();
    ++accepted_;
    connection.peer = std::make_unique<Peer>(socket, stopSignal_);
    connection.thread = std::thread([this, &connection] {
        serve_(*connection.peer);
        const std::lock_guard innerGuard(lock_);
        connection.peer.reset();
        connection.isOver = true;
    });
}

void SocketServer::reap() {
    connections_.remove_if([](Connection& connection) {
        if (connection.isOver)
            connection.thread.join();
        return connection.isOver;
    });
}

void SocketServer::dropConnections() {
    const std::lock_guard guard(lock_);
    for (const Connection& connection : connections_) {
        if (connection.peer)
            connection.peer->drop();
    }
}

}  // namespace support
