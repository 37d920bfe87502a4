#pragma once

#include <QByteArray>
#include <memory>
#include <optional>

#include "http/request/request_parts.h"
#include "platform/base/clock.h"
#include "platform/base/error.h"
#include "platform/net/http_message.h"

namespace http {

class HTTPDataDecompressor;
class RequestRun;

/// What happens when a stream speaks: takes the head into the request's state, moves the body to
/// whoever is to have it, ends the response.
///
/// The request's loop, under its lock.
class ResponseReader {
public:
    ResponseReader(RequestParts parts, RequestRun& run);
    ~ResponseReader();
    ResponseReader(const ResponseReader&) = delete;
    ResponseReader& operator=(const ResponseReader&) = delete;

    void handleBytesAvailable();
    void handleStreamComplete();
    void handleStreamError();

    /// Takes what headers say that came from a cache. True: they redirect.
    [[nodiscard]] bool takeCachedHeaders();

private:
    void parseStringEncodingFromHeaders();
    /// Decides whether the response in hand is followed, and prepares the next request if so.
    [[nodiscard]] bool willRedirect();
    void breakOff(const platform::Error& error);
    void readResponseHeaders();
    void takeHead(const platform::HTTPResponseHead& head);
    void takeCookies();
    void noteLength();
    [[nodiscard]] qsizetype readLength() const;
    /// Whether the body is decompressed as it comes.
    [[nodiscard]] bool inflatesOnTheWay() const;
    void distribute(QByteArray received);
    void deliver(QByteArray data);
    /// Whether another answer follows whatever this one's body says, which has had its chance.
    [[nodiscard]] bool isWorthNoMore() const;
    void endEarly();
    [[nodiscard]] bool isFinalResponse() const;

    RequestParts parts_;
    RequestRun& run_;
    std::unique_ptr<HTTPDataDecompressor> dataDecompressor_;
    platform::Seconds headTime_ = 0;  ///< Monotonic.
    bool isEndedEarly_ = false;
};

}  // namespace http
