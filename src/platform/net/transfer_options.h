#pragma once

#include "platform/net/curl_handles.h"
#include "platform/net/http_read_stream.h"
#include "platform/net/request_lines.h"

namespace platform {

/// All that decides how an exchange is carried out, apart from its callbacks.
struct TransferSetup {
    HTTPRequestMessage message;
    /// Nothing: no body.
    std::optional<std::uint64_t> bodyLength;
    HTTPProxy proxy;
    TLSSettings tls;
    ConnectionCredentials serverCredentials, proxyCredentials;
    /// Null: a connection of its own.
    CURLSH* sharedConnections = nullptr;
};

/// The most that one receive call takes from the socket.
[[nodiscard]] long receiveBufferSize(const TransferSetup& setup);

/// `lines` must outlive the transfer. False: it cannot be carried out.
[[nodiscard]] bool applySetup(CURL* easy, const TransferSetup& setup, const RequestLines& lines);

}  // namespace platform
