#pragma once

#include <openssl/ssl.h>

#include <memory>

namespace platform {

/// What is known of the end of a TLS connection.
struct TLSEnd {
    /// The peer has said that nothing more comes. Without that, an end may be the work of somebody
    /// on the way (RFC 9112, 9.8), which libcurl does not tell from the other.
    bool isAnnounced = false;
};

/// Of the connection that is about to be made with this context.
[[nodiscard]] std::shared_ptr<const TLSEnd> watchTLSEnd(SSL_CTX* context);

}  // namespace platform
