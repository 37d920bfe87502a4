#include "platform/net/http_connection_identity_private.h"
#include "platform/net/network_loop_private.h"

namespace platform {

HTTPConnectionIdentity::Private::Private(NetworkLoop& loop)
    : loop_(&loop), share_(curl_share_init(), &curl_share_cleanup) {
    curl_share_setopt(share_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_CONNECT);
    curl_share_setopt(share_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
    loop.internals().addIdentity(*this);
}

HTTPConnectionIdentity::Private::~Private() {
    if (loop_ != nullptr)
        loop_->internals().removeIdentity(*this);
}

void HTTPConnectionIdentity::Private::loopEnds() {
    share_.reset();
    loop_ = nullptr;
}

HTTPConnectionIdentity::HTTPConnectionIdentity(NetworkLoop& loop)
    : private_(std::make_unique<Private>(loop)) {}
HTTPConnectionIdentity::~HTTPConnectionIdentity() = default;

}  // namespace platform
