#include "http/http_session.h"

#include "http/shared/shared_state.h"

namespace http {

HTTPSession::HTTPSession(platform::Clock& clock, std::unique_ptr<platform::SystemProxies> proxies)
    : shared_(std::make_shared<SharedState>(clock)) {
    shared_->proxies = proxies != nullptr
                           ? std::move(proxies)
                           : platform::makeSystemProxies(QProcessEnvironment::systemEnvironment());
    SharedState::install(shared_);
}

HTTPSession::~HTTPSession() {
    // What still waits must not start while the thread winds up.
    shared_->sharedQueue.setSuspended(true);
    shared_->thread.stop();
    shared_->sharedQueue.removeAllOperations();
    SharedState::install(nullptr);
}

}  // namespace http
