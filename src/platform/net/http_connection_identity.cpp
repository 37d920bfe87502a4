#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "platform/net/http_connection_identity_private.h"
#include "platform/net/network_loop_private.h"

namespace platform {

KeptConnection::KeptConnection() : share_(curl_share_init(), &curl_share_cleanup) {
    curl_share_setopt(share_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_CONNECT);
    curl_share_setopt(share_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
}

int KeptConnection::closeSocket(void* kept, curl_socket_t socket) {
    auto& socketInUse = static_cast<KeptConnection*>(kept)->socket_;
    if (socketInUse == socket)
        socketInUse = CURL_SOCKET_BAD;
    return ::close(socket);
}

bool KeptConnection::isQuiet() const {
    if (isSpoilt_ || socket_ == CURL_SOCKET_BAD)
        return !isSpoilt_;
    char next = 0;
    return ::recv(socket_, &next, 1, MSG_PEEK | MSG_DONTWAIT) < 0 &&
           (errno == EAGAIN || errno == EWOULDBLOCK);
}

HTTPConnectionIdentity::Private::Private(NetworkLoop& loop)
    : loop_(&loop), connection_(std::make_shared<KeptConnection>()) {
    loop.internals().addIdentity(*this);
}

HTTPConnectionIdentity::Private::~Private() {
    if (loop_ != nullptr)
        loop_->internals().removeIdentity(*this);
}

const std::shared_ptr<KeptConnection>& HTTPConnectionIdentity::Private::connection() {
    if (connection_ != nullptr && !connection_->isQuiet())
        connection_ = std::make_shared<KeptConnection>();
    return connection_;
}

void HTTPConnectionIdentity::Private::loopEnds() {
    connection_.reset();
    loop_ = nullptr;
}

HTTPConnectionIdentity::HTTPConnectionIdentity(NetworkLoop& loop)
    : private_(std::make_unique<Private>(loop)) {}
HTTPConnectionIdentity::~HTTPConnectionIdentity() = default;

}  // namespace platform
