#include "http/request/connection_lease.h"

#include <QRegularExpression>
#include <utility>

#include "http/request/request_state.h"
#include "http/shared/transfer_loop.h"
#include "platform/net/http_read_stream.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::HTTPConnectionIdentity;

namespace {

/// A server that has this many requests left for a connection, or fewer, may close it at any
/// moment.
constexpr int tooFewRequestsLeft = 5;

}  // namespace

std::optional<platform::Seconds> keepAliveTimeout(const QString& keepAlive) {
    static const QRegularExpression pattern(
        u"^\\s*(?:timeout=\\s*(\\d{0,9}))?.*?max=\\s*(\\d{1,9})"_s,
        QRegularExpression::CaseInsensitiveOption);
    const auto match = pattern.match(keepAlive);
    if (match.captured(2).toInt() <= tooFewRequestsLeft)
        return std::nullopt;
    return match.captured(1).toInt();
}

ConnectionLease::ConnectionLease(RequestState& state, ConnectionTable& table)
    : _state(state), _table(table) {}

std::shared_ptr<HTTPConnectionIdentity> ConnectionLease::acquire(
    const std::shared_ptr<TransferLoop>& loop, const QString& circumstances) {
    const ConnectionTarget target = ConnectionTarget::of(_state.url);
    if (!target.isComplete()) {
        _connectionInfo = nullptr;
        _state.options.shouldAttemptPersistentConnection = false;
    }
    if (!_state.options.shouldAttemptPersistentConnection)
        return nullptr;
    _connectionInfo =
        _table.acquire(target, loop, _connectionInfo, _requestID, std::exchange(_mustBeNew, false));
    // The entry is this request's own now, so its socket can be touched without the table's lock.
    if (_connectionInfo->identity == nullptr || _connectionInfo->circumstances != circumstances) {
        _connectionInfo->identity = std::make_shared<HTTPConnectionIdentity>(loop->network());
        _connectionInfo->circumstances = circumstances;
    }
    return _connectionInfo->identity;
}

void ConnectionLease::judge(const platform::HTTPResponseHead& head) {
    if (!_state.options.shouldAttemptPersistentConnection)
        return;
    const QString connection = head.headers.value(u"Connection"_s).value_or(QString()).toLower();
    if (head.version == platform::HTTPVersion::Http10 && connection != u"keep-alive"_s)
        return;
    if (connection == u"close"_s)
        return;
    if (const auto keepAlive = head.headers.value(u"Keep-Alive"_s)) {
        const auto timeout = keepAliveTimeout(*keepAlive);
        if (!timeout)
            return;
        _state.options.persistentConnectionTimeoutSeconds = *timeout;
    }
    _connectionCanBeReused = true;
}

void ConnectionLease::endUse() {
    if (_connectionInfo == nullptr)
        return;
    _table.release(_connectionInfo, _requestID, _state.options.persistentConnectionTimeoutSeconds,
                   _connectionCanBeReused);
}

void ConnectionLease::remove() {
    if (_connectionInfo != nullptr)
        _table.remove(_connectionInfo, _requestID);
}

void ConnectionLease::giveUp() {
    remove();
    _connectionInfo = nullptr;
    _mustBeNew = true;
}

void ConnectionLease::stampExpiry() {
    if (_connectionInfo != nullptr && _connectionCanBeReused)
        _table.stampExpiry(_connectionInfo, _state.options.persistentConnectionTimeoutSeconds);
}

std::uint32_t ConnectionLease::connectionID() const {
    return _connectionInfo != nullptr ? _connectionInfo->id : 0;
}

}  // namespace http
