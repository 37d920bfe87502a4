#pragma once

#include <memory>
#include <mutex>

#include "platform/base/clock.h"

namespace platform {
class NetworkThread;
}

namespace http {

class BandwidthAccount;
class ConnectionTable;
class TransferLoop;

/// The thread that does the network work of all asynchronous requests; it begins when it is first
/// asked for. Any thread.
class RequestThread {
public:
    RequestThread(platform::Clock& clock, const BandwidthAccount& bandwidth,
                  ConnectionTable& connections);
    ~RequestThread();
    RequestThread(const RequestThread&) = delete;
    RequestThread& operator=(const RequestThread&) = delete;

    /// Null once it has been stopped.
    [[nodiscard]] std::shared_ptr<TransferLoop> loop();
    /// Closes the loop, lets what is posted run, joins. Not on the request thread itself.
    void stop();

private:
    platform::Clock& clock_;
    const BandwidthAccount& bandwidth_;
    ConnectionTable& connections_;
    std::mutex lock_;  ///< Guards all that follows.
    bool stopped_ = false;
    std::unique_ptr<platform::NetworkThread> thread_;
    std::shared_ptr<TransferLoop> loop_;
};

}  // namespace http
