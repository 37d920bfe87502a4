#include "http/shared/transfer_loop.h"

#include "http/shared/connection_table.h"
#include "platform/net/network_loop.h"

namespace http {

TransferLoop::TransferLoop(platform::NetworkLoop& network, const BandwidthAccount& bandwidth,
                           ConnectionTable& connections)
    : _network(&network),
      _connections(connections),
      _ticker(std::make_unique<StatusTicker>(network.calls(), bandwidth)) {}

TransferLoop::~TransferLoop() = default;

void TransferLoop::post(Call call) {
    const std::scoped_lock guard(_lock);
    if (_network == nullptr)
        return;
    _network->calls().post([self = shared_from_this(), call = std::move(call)] {
        if (!self->isClosed())
            call();
    });
}

void TransferLoop::addClient(Client* client) {
    _clients.insert(client);
}

void TransferLoop::removeClient(Client* client) {
    _clients.erase(client);
}

void TransferLoop::close() {
    while (!_clients.empty()) {
        Client* const client = *_clients.begin();
        _clients.erase(_clients.begin());
        client->loopWillEnd();
    }
    _connections.removeAllOfLoop(this);
    _ticker.reset();
    const std::scoped_lock guard(_lock);
    _network = nullptr;
}

}  // namespace http
