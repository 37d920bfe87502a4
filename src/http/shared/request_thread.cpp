#include "http/shared/request_thread.h"

#include "http/shared/transfer_loop.h"
#include "platform/net/network_loop.h"

namespace http {

RequestThread::RequestThread(platform::Clock& clock, const BandwidthAccount& bandwidth,
                             ConnectionTable& connections)
    : clock_(clock), bandwidth_(bandwidth), connections_(connections) {}

RequestThread::~RequestThread() {
    stop();
}

std::shared_ptr<TransferLoop> RequestThread::loop() {
    const std::scoped_lock guard(lock_);
    if (stopped_)
        return nullptr;
    if (thread_ == nullptr) {
        thread_ = std::make_unique<platform::NetworkThread>(clock_);
        loop_ = std::make_shared<TransferLoop>(thread_->loop(), bandwidth_, connections_);
    }
    return loop_;
}

void RequestThread::stop() {
    std::unique_ptr<platform::NetworkThread> thread;
    std::shared_ptr<TransferLoop> loop;
    {
        const std::scoped_lock guard(lock_);
        stopped_ = true;
        thread = std::move(thread_);
        loop = std::move(loop_);
    }
    if (thread != nullptr)
        loop->post([loop] { loop->close(); });
}

}  // namespace http
