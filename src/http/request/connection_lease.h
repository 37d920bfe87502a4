#pragma once

#include <QString>
#include <cstdint>
#include <memory>

#include "http/shared/connection_table.h"
#include "platform/net/http_message.h"

namespace http {

struct RequestState;

/// One request's part in the table of connections: which it uses, and whether the response allows
/// another to follow on it. The requests' loop only.
class ConnectionLease {
public:
    ConnectionLease(RequestState& state, ConnectionTable& table);

    /// Takes a connection for a send. Null: none that is kept. `circumstances`: proxy and TLS
    /// settings; one socket never serves two different ones.
    [[nodiscard]] std::shared_ptr<platform::HTTPConnectionIdentity> acquire(
        const std::shared_ptr<TransferLoop>& loop, const QString& circumstances);
    /// Reads from a response whether its connection may be used again, and for how long.
    void judge(const platform::HTTPResponseHead& head);
    [[nodiscard]] bool connectionCanBeReused() const { return connectionCanBeReused_; }
    void setConnectionCannotBeReused() { connectionCanBeReused_ = false; }

    /// The response is whole: others may have the connection.
    void endUse();
    /// The connection has failed this request: nobody gets it again.
    void remove();
    /// The same, and the next send takes another.
    void giveUp();
    /// The request has failed, for a reason that is not the connection's.
    void stampExpiry();

    /// 0: none.
    [[nodiscard]] std::uint32_t connectionID() const;

private:
    RequestState& state_;
    ConnectionTable& table_;
    ConnectionTable::Entry connectionInfo_;
    std::uint32_t requestID_ = 0;
    bool mustBeNew_ = false;  ///< The next one: the last one failed.
    bool connectionCanBeReused_ = false;
};

/// What a "Keep-Alive" header allows (RFC 2068, 19.7.1.1). Nothing: too few requests are left, or
/// it does not say how many.
[[nodiscard]] std::optional<platform::Seconds> keepAliveTimeout(const QString& keepAlive);

}  // namespace http
