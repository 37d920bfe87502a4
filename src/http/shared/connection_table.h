#pragma once

#include <QString>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/base/clock.h"

namespace platform {
class HTTPConnectionIdentity;
class Url;
}  // namespace platform

namespace http {

class TransferLoop;

/// Where a connection leads. Host and scheme as written; two spellings are two targets.
struct ConnectionTarget {
    QString scheme;
    QString host;
    int port = 0;  ///< The one written; 0: none.

    [[nodiscard]] static ConnectionTarget of(const platform::Url& url);
    [[nodiscard]] bool isComplete() const { return !host.isEmpty() && !scheme.isEmpty(); }
    friend bool operator==(const ConnectionTarget&, const ConnectionTarget&) = default;
};

/// One connection that requests use in turn.
struct ConnectionEntry {
    std::uint32_t id = 0;  ///< From 1.
    ConnectionTarget target;
    std::optional<std::uint32_t> request;      ///< Who uses it now; nothing: it is free.
    std::optional<platform::Seconds> expires;  ///< Monotonic; nothing: still in its first use.
    /// Sockets belong to a loop, so only requests on this one may have it.
    std::weak_ptr<TransferLoop> loop;
    /// The socket; null until it is first needed and after one that must not be used again.
    std::shared_ptr<platform::HTTPConnectionIdentity> identity;
    /// Proxy and TLS settings under which the socket was opened.
    QString circumstances;
};

/// Which connections there are, who uses them and until when a free one may be used again. Expiry
/// is looked at when somebody wants a connection; no timer runs for it.
///
/// Any thread.
class ConnectionTable {
public:
    using Entry = std::shared_ptr<ConnectionEntry>;

    explicit ConnectionTable(platform::Clock& clock) : clock_(clock) {}

    /// A free connection to `target` on that loop, the latest in the table, or a new one, taken
    /// for the request. `current`: the one that the request had before; null: none. `requestID` 0
    /// is given the next number. `mustBeNew`: those that are kept are not trusted.
    [[nodiscard]] Entry acquire(const ConnectionTarget& target,
                                const std::shared_ptr<TransferLoop>& loop, const Entry& current,
                                std::uint32_t& requestID, bool mustBeNew = false);
    /// The request that uses it is done with it; it may be had by others for so many seconds, if
    /// not `keepsSocket` with a fresh socket.
    void release(const Entry& entry, std::uint32_t requestID, platform::Seconds timeout,
                 bool keepsSocket);
    /// Takes it out of the table, unless another request has it by now.
    void remove(const Entry& entry, std::uint32_t requestID);
    /// Lets it expire so many seconds from now.
    void stampExpiry(const Entry& entry, platform::Seconds timeout);

    void expirePersistentConnections();
    /// Takes out all of a loop that is about to end; on its thread.
    void removeAllOfLoop(const TransferLoop* loop);
    [[nodiscard]] std::size_t count() const;

    /// Counts streams that are allowed to receive.
    void countScheduledStream(int difference);
    [[nodiscard]] bool hasScheduledStreams() const;

private:
    void dispose(const Entry& entry);
    void limitFreeConnections();

    platform::Clock& clock_;
    mutable std::recursive_mutex connectionLock_;  ///< Guards all that follows, entries too.
    std::vector<Entry> entries_;
    std::uint32_t lastID_ = 0;
    std::uint32_t lastRequestID_ = 0;
    int scheduledStreams_ = 0;
};

}  // namespace http
