#pragma once

#include <QByteArray>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/base/clock.h"
#include "platform/net/http_read_stream.h"

namespace http {

class BandwidthAccount;
class ConnectionTable;
class HTTPInputStream;
struct RequestState;

/// The read stream of one send, with what must live as long as it, and the one place that decides
/// whether it may receive: only while neither the bandwidth limit nor the main thread's backlog
/// holds it.
///
/// The request's loop, under its lock.
class TransferStream {
public:
    enum class Hold { Throttle = 1, Backlog = 2, OwnThrottle = 4 };

    struct Setup {
        platform::HTTPRequestMessage message;
        std::unique_ptr<HTTPInputStream> body;  ///< Null: none.
        std::uint64_t bodyLength = 0;
        platform::TLSSettings tls;
        platform::HTTPProxy proxy;
        platform::ConnectionCredentials serverCredentials, proxyCredentials;
        std::shared_ptr<platform::HTTPConnectionIdentity> connection;  ///< Null: none that is kept.
    };

    TransferStream(RequestState& state, BandwidthAccount& bandwidth, ConnectionTable& connections,
                   platform::Clock& clock);
    ~TransferStream();
    TransferStream(const TransferStream&) = delete;
    TransferStream& operator=(const TransferStream&) = delete;

    /// Takes the place of a stream that is still there. False: it cannot be opened.
    [[nodiscard]] bool open(platform::NetworkLoop& loop, Setup setup,
                            platform::HTTPReadStream::Client client);
    [[nodiscard]] bool exists() const { return readStream_ != nullptr; }
    void destroy();
    /// Takes nothing more from the server; what has come can still be asked for.
    void stopReceiving();

    /// Counts the time and lets the stream rest or go on as the bandwidth limit wants it.
    void performThrottling();
    void hold(Hold reason);
    void letGo(Hold reason);
    [[nodiscard]] bool readStreamIsScheduled() const { return readStreamIsScheduled_; }

    [[nodiscard]] bool hasBytesAvailable() const;
    [[nodiscard]] QByteArray read(qsizetype maximum);
    [[nodiscard]] const std::optional<platform::HTTPResponseHead>& responseHead() const;
    [[nodiscard]] std::optional<platform::Error> error() const;
    [[nodiscard]] std::uint64_t bodyBytesWritten() const;

private:
    void obey(BandwidthAccount& account, Hold reason);
    void updateSchedule();

    RequestState& state_;
    BandwidthAccount& bandwidth_;
    ConnectionTable& connections_;
    platform::Clock& clock_;
    // In this order: the stream uses the other two until it ends.
    std::shared_ptr<platform::HTTPConnectionIdentity> connection_;
    std::unique_ptr<HTTPInputStream> postBodyReadStream_;
    std::unique_ptr<platform::HTTPReadStream> readStream_;
    std::shared_ptr<BandwidthAccount> ownBandwidth_;  ///< As last obeyed.
    unsigned holds_ = 0;
    bool readStreamIsScheduled_ = false;
};

/// The settings under which a connection is opened, as text to compare.
[[nodiscard]] QString connectionCircumstances(const TransferStream::Setup& setup);

}  // namespace http
