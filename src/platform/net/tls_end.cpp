#include "platform/net/tls_end.h"

namespace platform {

namespace {

using Watched = std::shared_ptr<TLSEnd>;

/// The context may outlive whoever watches, and the other way round.
void release(void*, void* watched, CRYPTO_EX_DATA*, int, long, void*) {
    delete static_cast<Watched*>(watched);
}

int placeInContext() {
    static const int place = SSL_CTX_get_ex_new_index(0, nullptr, nullptr, nullptr, &release);
    return place;
}

void hear(const SSL* connection, int what, int alert) {
    constexpr int description = 0xff;
    if ((what & SSL_CB_READ_ALERT) != SSL_CB_READ_ALERT ||
        (alert & description) != SSL_AD_CLOSE_NOTIFY)
        return;
    const void* const watched = SSL_CTX_get_ex_data(SSL_get_SSL_CTX(connection), placeInContext());
    if (watched != nullptr)
        (*static_cast<const Watched*>(watched))->isAnnounced = true;
}

}  // namespace

std::shared_ptr<const TLSEnd> watchTLSEnd(SSL_CTX* context) {
    auto end = std::make_shared<TLSEnd>();
    auto watched = std::make_unique<Watched>(end);
    if (SSL_CTX_set_ex_data(context, placeInContext(), watched.get()) == 1)
        static_cast<void>(watched.release());
    SSL_CTX_set_info_callback(context, &hear);
    return end;
}

}  // namespace platform
