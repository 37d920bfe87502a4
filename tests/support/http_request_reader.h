#pragma once

#include <optional>

#include "support/http_server.h"
#include "support/socket_server.h"

namespace support {

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

}  // namespace support
