#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace support {

/// What the server saw of one request.
struct ReceivedRequest {
    std::string method, target, version;
    std::vector<std::pair<std::string, std::string>> headers;
    QByteArray body;
    QByteArray raw;  ///< The head as it came.

    /// Without regard to case. Nothing: no such field.
    [[nodiscard]] std::optional<std::string> header(const std::string& name) const;
};

/// How to answer one request. The defaults give an honest 200 with ranges.
struct Reply {
    int status = 200;
    /// After the ones that the server makes.
    std::vector<std::pair<std::string, std::string>> headers{};
    QByteArray body{};

    /// Sent as it stands in place of everything else.
    std::optional<QByteArray> raw{};
    enum class Ranges { Honour, Ignore, WrongOffset, WrongTotal };
    Ranges ranges = Ranges::Honour;
    bool announceRanges = true;
    enum class Length { Announce, Chunked, None };
    Length length = Length::Announce;
    /// Close (or with `resetConnection` reset) after so many bytes of the body.
    std::optional<std::size_t> cutAfter{};
    bool resetConnection = false;
    /// Stop sending after so many bytes of the body, until `HTTPServer::release`.
    std::optional<std::size_t> stallAfter{};
    /// Do not even send the head until `HTTPServer::release`.
    bool stallHead = false;
    /// Bytes per second, in real time. 0: as fast as possible.
    std::size_t rate = 0;
    bool keepAlive = true;
};

/// A scriptable HTTP/1.1 server on a loopback port of the system's choice, with threads of its own
/// that end with the object. Any thread.
class HTTPServer {
public:
    using Handler = std::function<Reply(const ReceivedRequest&)>;

    HTTPServer();
    ~HTTPServer();

    /// "http://127.0.0.1:PORT" and `path`.
    [[nodiscard]] QString url(const QString& path = QStringLiteral("/")) const;
    [[nodiscard]] int port() const;

    /// Answers for a path (without its query). A path nobody answers for gets a 404. Handlers are
    /// called one at a time, on threads of the server.
    void serve(const std::string& path, Reply reply);
    void handle(const std::string& path, Handler handler);
    /// Answers whatever has no handler of its own.
    void handleAll(Handler handler);

    /// Answers as soon as the head of a request has come; its body is thrown away unseen.
    void serveBeforeBody(const std::string& path, Reply reply);

    /// Lets stalled answers go on.
    void release();

    /// In the order in which they were complete.
    [[nodiscard]] std::vector<ReceivedRequest> requests() const;
    /// Sockets accepted so far.
    [[nodiscard]] std::size_t connectionCount() const;
    /// Closes every open socket at once.
    void dropConnections();

    class Private;

private:
    std::unique_ptr<Private> private_;
};

/// Bytes that differ all over, the same for the same seed.
[[nodiscard]] QByteArray patternedBytes(qsizetype count, unsigned seed = 1);

}  // namespace support
