#pragma once

#include <functional>

#include "support/http_server.h"
#include "support/socket_server.h"

namespace support {

/// Sends one reply, with all the misbehaviour that it asks for.
class HTTPReplyWriter {
public:
    /// `waitForRelease` blocks; false: the connection is over.
    HTTPReplyWriter(Peer& peer, const ReceivedRequest& request, const Reply& reply,
                    std::function<bool()> waitForRelease);

    /// Answers whether the connection stays open for another request.
    [[nodiscard]] bool send();

private:
    using Headers = std::vector<std::pair<std::string, std::string>>;

    /// Chooses status and part of the body by the range asked for.
    void applyRange();
    void refuseRange();
    [[nodiscard]] bool rangeStillApplies() const;
    [[nodiscard]] QByteArray head() const;
    [[nodiscard]] bool hasBody() const;
    [[nodiscard]] bool keepsAlive() const;
    [[nodiscard]] bool sendBody();
    [[nodiscard]] bool sendPiece(const char* bytes, qsizetype count);
    [[nodiscard]] bool isChunked() const;

    Peer& peer_;
    const ReceivedRequest& request_;
    const Reply& reply_;
    std::function<bool()> waitForRelease_;
    int status_;
    Headers rangeHeaders_;
    QByteArray body_;
};

}  // namespace support
