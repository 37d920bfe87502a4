#include "support/http_server.h"

#include <QList>
#include <algorithm>
#include <condition_variable>

#include "support/http_reply_writer.h"
#include "support/socket_server.h"

namespace support {

namespace {

constexpr qsizetype largestHead = 1 << 20;
constexpr qsizetype largestBody = 256 << 20;

bool sameName(const std::string& a, const std::string& b) {
    return QByteArray::fromStdString(a).compare(b.c_str(), Qt::CaseInsensitive) == 0;
}

/// Takes requests off a connection, one after the other, pipelined ones too.
class HTTPRequestReader {
public:
    explicit HTTPRequestReader(Peer& peer) : peer_(peer) {}

    /// The next request without its body. Nothing: no more come.
    [[nodiscard]] std::optional<ReceivedRequest> readHead();
    /// The body that belongs to `request`. False: it did not come whole.
    bool readBody(ReceivedRequest& request);

private:
    /// Up to and with `end`. Empty: it did not come.
    [[nodiscard]] QByteArray takeThrough(const QByteArray& end);
    bool appendExactly(QByteArray& target, qsizetype count);
    [[nodiscard]] bool receiveMore();

    Peer& peer_;
    QByteArray pending_;
};

bool HTTPRequestReader::receiveMore() {
    const QByteArray more = peer_.read();
    pending_ += more;
    return !more.isEmpty();
}

QByteArray HTTPRequestReader::takeThrough(const QByteArray& end) {
    qsizetype at = -1;
    while ((at = pending_.indexOf(end)) < 0) {
        if (pending_.size() > largestHead || !receiveMore())
            return {};
    }
    const QByteArray taken = pending_.left(at + end.size());
    pending_.remove(0, taken.size());
    return taken;
}

std::optional<ReceivedRequest> HTTPRequestReader::readHead() {
    ReceivedRequest request;
    request.raw = takeThrough(QByteArrayLiteral("\r\n\r\n"));
    QList<QByteArray> lines = request.raw.split('\n');
    const QList<QByteArray> first = lines.takeFirst().trimmed().split(' ');
    if (first.size() != 3)
        return std::nullopt;
    request.method = first[0].toStdString();
    request.target = first[1].toStdString();
    request.version = first[2].toStdString();
    for (const QByteArray& line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0)
            request.headers.emplace_back(line.left(colon).toStdString(),
                                         line.mid(colon + 1).trimmed().toStdString());
    }
    return request;
}

bool HTTPRequestReader::readBody(ReceivedRequest& request) {
    const auto length = request.header("Content-Length");
    return !length || appendExactly(request.body, QByteArray::fromStdString(*length).toLongLong());
}

bool HTTPRequestReader::appendExactly(QByteArray& target, qsizetype count) {
    if (count < 0 || target.size() + count > largestBody)
        return false;
    while (count > 0) {
        if (pending_.isEmpty() && !receiveMore())
            return false;
        const qsizetype taken = std::min(count, pending_.size());
        target += pending_.left(taken);
        pending_.remove(0, taken);
        count -= taken;
    }
    return true;
}

}  // namespace

std::optional<std::string> ReceivedRequest::header(const std::string& name) const {
    const auto found = std::find_if(headers.begin(), headers.end(), [&name](const auto& field) {
        return sameName(field.first, name);
    });
    return found == headers.end() ? std::nullopt : std::optional(found->second);
}

class HTTPServer::Private {
public:
    Private() : sockets_(std::make_unique<SocketServer>([this](Peer& peer) { serve(peer); })) {}
    ~Private() {
        {
            const std::lock_guard guard(lock_);
            isStopping_ = true;
        }
        released_.notify_all();
        sockets_->stop();
    }

    struct Route {
        Handler handler;
        bool readsBody = true;
    };

    void add(const std::string& path, Route route) {
        const std::lock_guard guard(lock_);
        routes_[path] = std::move(route);
    }

    void serve(Peer& peer);
    [[nodiscard]] bool answer(Peer& peer, HTTPRequestReader& reader, ReceivedRequest request);
    [[nodiscard]] Route routeFor(const ReceivedRequest& request) const;

    std::mutex handlerLock_;   ///< Held while a handler runs.
    mutable std::mutex lock_;  ///< Guards all that follows but the sockets.
    std::condition_variable released_;
    std::uint64_t releases_ = 0;
    bool isStopping_ = false;
    std::map<std::string, Route> routes_;
    Route fallback_;
    std::vector<ReceivedRequest> requests_;
    const std::unique_ptr<SocketServer> sockets_;
};

HTTPServer::Private::Route HTTPServer::Private::routeFor(const ReceivedRequest& request) const {
    const std::lock_guard guard(lock_);
    const auto route = routes_.find(request.target.substr(0, request.target.find('?')));
    if (route != routes_.end())
        return route->second;
    if (fallback_.handler)
        return fallback_;
    return {[](const ReceivedRequest&) { return Reply{.status = 404}; }};
}

void HTTPServer::Private::serve(Peer& peer) {
    HTTPRequestReader reader(peer);
    bool goesOn = true;
    while (goesOn) {
        auto request = reader.readHead();
        goesOn = request && answer(peer, reader, std::move(*request));
    }
}

bool HTTPServer::Private::answer(Peer& peer, HTTPRequestReader& reader, ReceivedRequest request) {
    const Route route = routeFor(request);
    if (route.readsBody && !reader.readBody(request))
        return false;
    std::uint64_t seenReleases = 0;
    {
        const std::lock_guard guard(lock_);
        requests_.push_back(request);
        seenReleases = releases_;
    }
    Reply reply;
    {
        const std::lock_guard guard(handlerLock_);
        reply = route.handler(request);
    }
    const auto waitForRelease = [&] {
        std::unique_lock guard(lock_);
        released_.wait(
            guard, [&] { return isStopping_ || peer.isDropped() || releases_ != seenReleases; });
        return !isStopping_ && !peer.isDropped();
    };
    const bool keepsOpen = HTTPReplyWriter(peer, request, reply, waitForRelease).send();
    if (route.readsBody)
        return keepsOpen;
    // A socket closed with bytes unread resets the connection and takes the answer with it.
    while (!peer.read().isEmpty()) {
    }
    return false;
}

HTTPServer::HTTPServer() : private_(std::make_unique<Private>()) {}
HTTPServer::~HTTPServer() = default;

QString HTTPServer::url(const QString& path) const {
    return QStringLiteral("http://127.0.0.1:%1%2").arg(QString::number(port()), path);
}

int HTTPServer::port() const {
    return private_->sockets_->port();
}

void HTTPServer::serve(const std::string& path, Reply reply) {
    handle(path, [reply = std::move(reply)](const ReceivedRequest&) { return reply; });
}

void HTTPServer::handle(const std::string& path, Handler handler) {
    private_->add(path, {std::move(handler)});
}

void HTTPServer::handleAll(Handler handler) {
    const std::lock_guard guard(private_->lock_);
    private_->fallback_ = {std::move(handler)};
}

void HTTPServer::serveBeforeBody(const std::string& path, Reply reply) {
    private_->add(path,
                  {[reply = std::move(reply)](const ReceivedRequest&) { return reply; }, false});
}

void HTTPServer::release() {
    {
        const std::lock_guard guard(private_->lock_);
        ++private_->releases_;
    }
    private_->released_.notify_all();
}

std::vector<ReceivedRequest> HTTPServer::requests() const {
    const std::lock_guard guard(private_->lock_);
    return private_->requests_;
}

std::size_t HTTPServer::connectionCount() const {
    return static_cast<std::size_t>(private_->sockets_->connectionCount());
}

void HTTPServer::dropConnections() {
    private_->sockets_->dropConnections();
    // A stalled answer looks again whether its connection is still there.
    { const std::lock_guard guard(private_->lock_); }
    private_->released_.notify_all();
}

QByteArray patternedBytes(qsizetype count, unsigned seed) {
    QByteArray bytes(count, Qt::Uninitialized);
    std::uint64_t state = seed * 0x9e3779b97f4a7c15ULL + 1;
    for (char& byte : bytes) {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        byte = static_cast<char>(state >> 56);
    }
    return bytes;
}

}  // namespace support
