#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <set>

#include "http/shared/status_ticker.h"

namespace platform {
class NetworkLoop;
}

namespace http {

class ConnectionTable;

/// A network loop as requests use it: calls can be posted to it from anywhere even when it has
/// ended, and it tells its requests of its end while streams can still be closed.
class TransferLoop : public std::enable_shared_from_this<TransferLoop> {
public:
    using Call = std::function<void()>;

    /// Whoever holds network objects of this loop.
    class Client {
    public:
        virtual void loopWillEnd() = 0;

    protected:
        ~Client() = default;
    };

    TransferLoop(platform::NetworkLoop& network, const BandwidthAccount& bandwidth,
                 ConnectionTable& connections);
    ~TransferLoop();
    TransferLoop(const TransferLoop&) = delete;
    TransferLoop& operator=(const TransferLoop&) = delete;

    /// Dropped once the loop has ended. Any thread.
    void post(Call call);

    // The loop's thread only.

    [[nodiscard]] bool isClosed() const { return network_ == nullptr; }
    /// Not after `close`.
    [[nodiscard]] platform::NetworkLoop& network() { return *network_; }
    [[nodiscard]] StatusTicker& ticker() { return *ticker_; }
    void addClient(Client* client);
    void removeClient(Client* client);
    /// Ends the loop for all who use it and closes its connections; the network loop itself goes
    /// on.
    void close();

private:
    std::mutex lock_;  ///< Guards network_ against posting while the loop ends.
    platform::NetworkLoop* network_;
    ConnectionTable& connections_;
    std::unique_ptr<StatusTicker> ticker_;
    std::set<Client*> clients_;
};

}  // namespace http
