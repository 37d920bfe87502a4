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
    : state_(state), table_(table) {}

std::shared_ptr<HTTPConnectionIdentity> ConnectionLease::acquire(
    const std::shared_ptr<TransferLoop>& loop, const QString& circumstances) {
    const ConnectionTarget target = ConnectionTarget::of(state_.url);
    if (!target.isComplete()) {
        connectionInfo_ = nullptr;
        state_.options.shouldAttemptPersistentConnection = false;
    }
    if (!state_.options.shouldAttemptPersistentConnection)
        return nullptr;
    connectionInfo_ =
        table_.acquire(target, loop, connectionInfo_, requestID_, std::exchange(mustBeNew_, false));
    // The entry is this request's own now, so its socket can be touched without the table's lock.
    if (connectionInfo_->identity == nullptr || connectionInfo_->circumstances != circumstances) {
        connectionInfo_->identity = std::make_shared<HTTPConnectionIdentity>(loop->network());
        connectionInfo_->circumstances = circumstances;
    }
    return connectionInfo_->identity;
}

void ConnectionLease::judge(const platform::HTTPResponseHead& head) {
    if (!state_.options.shouldAttemptPersistentConnection)
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
        state_.options.persistentConnectionTimeoutSeconds = *timeout;
    }
    connectionCanBeReused_ = true;
}

void ConnectionLease::endUse() {
    if (connectionInfo_ == nullptr)
        return;
    table_.release(connectionInfo_, requestID_, state_.options.persistentConnectionTimeoutSeconds,
                   connectionCanBeReused_);
}

void ConnectionLease::remove() {
    if (connectionInfo_ != nullptr)
        table_.remove(connectionInfo_, requestID_);
}

void ConnectionLease::giveUp() {
    remove();
    connectionInfo_ = nullptr;
    mustBeNew_ = true;
}

void ConnectionLease::stampExpiry() {
    if (connectionInfo_ != nullptr && connectionCanBeReused_)
        table_.stampExpiry(connectionInfo_, state_.options.persistentConnectionTimeoutSeconds);
}

std::uint32_t ConnectionLease::connectionID() const {
    return connectionInfo_ != nullptr ? connectionInfo_->id : 0;
}

}  // namespace http
