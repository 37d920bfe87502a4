#pragma once

#include <QByteArray>
#include <atomic>
#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

namespace support {

/// One accepted socket, on the thread that serves it.
class Peer {
public:
    Peer(int socket, int stopSignal);
    ~Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    /// At least one byte and at most `maximum`. Empty: the connection or the server has ended.
    [[nodiscard]] QByteArray read(qsizetype maximum = 65536);
    /// Up to the empty line that ends the head of a request. Empty: it did not come.
    [[nodiscard]] QByteArray readHead();
    /// All bytes. False: the connection or the server has ended.
    bool write(const QByteArray& bytes) { return write(bytes.constData(), bytes.size()); }
    bool write(const char* bytes, qsizetype count);
    /// False: the connection or the server has ended meanwhile.
    bool pause(std::chrono::milliseconds duration);
    /// Carries bytes in both directions between this socket and 127.0.0.1:`port` until one ends.
    void relayTo(int port);

    /// The socket is reset, not ended, when it is closed.
    void resetOnClose();
    /// Ends the connection under the thread that serves it. Any thread.
    void drop();
    [[nodiscard]] bool isDropped() const { return isDropped_; }

private:
    [[nodiscard]] bool waitFor(short events, int timeoutMilliseconds = -1) const;
    [[nodiscard]] long readSome(char* buffer, qsizetype maximum);
    [[nodiscard]] long writeSome(const char* bytes, qsizetype count);

    const int socket_, stopSignal_;
    std::atomic<bool> isDropped_ = false;
};

/// Listens on 127.0.0.1 at a port of the system's choice; each connection is served on a thread of
/// its own. All threads end with the object, whatever their sockets wait for. Any thread.
class SocketServer {
public:
    /// Called on many threads at once; the connection is closed when it returns.
    using Serve = std::function<void(Peer&)>;

    explicit SocketServer(Serve serve);
    ~SocketServer();
    SocketServer(const SocketServer&) = delete;
    SocketServer& operator=(const SocketServer&) = delete;

    [[nodiscard]] int port() const { return port_; }
    [[nodiscard]] int connectionCount() const { return accepted_; }
    void dropConnections();
    /// Ends all connections and threads; the destructor does it too.
    void stop();

private:
    struct Connection {
        std::unique_ptr<Peer> peer;
        std::thread thread;
        bool isOver = false;
    };

    void accept();
    void start(int socket);
    void reap();

    const Serve serve_;
    int listener_ = -1, stopSignal_ = -1, port_ = 0;
    std::atomic<int> accepted_ = 0;
    std::atomic<bool> isStopping_ = false;
    std::mutex lock_;  ///< Guards connections_.
    std::list<Connection> connections_;
    std::thread acceptor_;
};

}  // namespace support
