#include "http/shared/transfer_loop.h"

#include "http/shared/connection_table.h"
#include "platform/net/network_loop.h"

namespace http {

TransferLoop::TransferLoop(platform::NetworkLoop& network, const BandwidthAccount& bandwidth,
                           ConnectionTable& connections)
    : network_(&network),
      connections_(connections),
      ticker_(std::make_unique<StatusTicker>(network.calls(), bandwidth)) {}

TransferLoop::~TransferLoop() = default;

void TransferLoop::post(Call call) {
    const std::scoped_lock guard(lock_);
    if (network_ == nullptr)
        return;
    network_->calls().post([self = shared_from_this(), call = std::move(call)] {
        if (!self->isClosed())
            call();
    });
}

void TransferLoop::addClient(Client* client) {
    clients_.insert(client);
}

void TransferLoop::removeClient(Client* client) {
    clients_.erase(client);
}

void TransferLoop::close() {
    while (!clients_.empty()) {
        Client* const client = *clients_.begin();
        clients_.erase(clients_.begin());
        client->loopWillEnd();
    }
    connections_.removeAllOfLoop(this);
    ticker_.reset();
    const std::scoped_lock guard(lock_);
    network_ = nullptr;
}

}  // namespace http
