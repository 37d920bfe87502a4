#pragma once

#include <memory>

#include "platform/net/curl_handles.h"
#include "platform/net/http_read_stream.h"
#include "platform/net/tls_end.h"

namespace platform {

/// The connection, and the TLS sessions, that the exchanges of one identity share. Whoever holds it
/// keeps the connection open. Network loop's thread only.
class KeptConnection {
public:
    KeptConnection();
    KeptConnection(const KeptConnection&) = delete;
    KeptConnection& operator=(const KeptConnection&) = delete;

    [[nodiscard]] CURLSH* share() const { return share_.get(); }
    /// libcurl's callback for the end of a socket.
    static int closeSocket(void* kept, curl_socket_t socket);
    /// An exchange has ended and left this open; CURL_SOCKET_BAD: nothing.
    void keep(curl_socket_t socket) { socket_ = socket; }
    [[nodiscard]] curl_socket_t socket() const { return socket_; }
    /// Something came that belongs to no exchange.
    void spoil() { isSpoilt_ = true; }
    /// Whether the next exchange may go over it: the server has neither ended it nor said anything
    /// unasked, which would pass for the next answer.
    [[nodiscard]] bool isQuiet() const;

    std::shared_ptr<const TLSEnd> end;  ///< Null: not over TLS.

private:
    curl_socket_t socket_ = CURL_SOCKET_BAD;
    bool isSpoilt_ = false;
    CurlShare share_;  ///< Last: its end closes the socket.
};

class HTTPConnectionIdentity::Private {
public:
    explicit Private(NetworkLoop& loop);
    ~Private();
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    /// For the next exchange: a new one, if that which was kept cannot be trusted. Null: the loop
    /// is gone.
    [[nodiscard]] const std::shared_ptr<KeptConnection>& connection();
    void loopEnds();

private:
    NetworkLoop* loop_;
    std::shared_ptr<KeptConnection> connection_;
};

}  // namespace platform
