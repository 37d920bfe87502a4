#include "http/shared/request_thread.h"

#include "http/shared/transfer_loop.h"
#include "platform/net/network_loop.h"

namespace http {

RequestThread::RequestThread(platform::Clock& clock, const BandwidthAccount& bandwidth,
                             ConnectionTable& connections)
    : _clock(clock), _bandwidth(bandwidth), _connections(connections) {}

RequestThread::~RequestThread() {
    stop();
}

std::shared_ptr<TransferLoop> RequestThread::loop() {
    const std::scoped_lock guard(_lock);
    if (_stopped)
        return nullptr;
    if (_thread == nullptr) {
        _thread = std::make_unique<platform::NetworkThread>(_clock);
        _loop = std::make_shared<TransferLoop>(_thread->loop(), _bandwidth, _connections);
    }
    return _loop;
}

void RequestThread::stop() {
    std::unique_ptr<platform::NetworkThread> thread;
    std::shared_ptr<TransferLoop> loop;
    {
        const std::scoped_lock guard(_lock);
        _stopped = true;
        thread = std::move(_thread);
        loop = std::move(_loop);
    }
    if (thread != nullptr)
        loop->post([loop] { loop->close(); });
}

}  // namespace http
