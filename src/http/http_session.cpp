#include "http/http_session.h"

#include "http/shared/shared_state.h"

namespace http {

HTTPSession::HTTPSession(platform::Clock& clock, std::unique_ptr<platform::SystemProxies> proxies)
    : _shared(std::make_shared<SharedState>(clock)) {
    _shared->proxies = proxies != nullptr
                           ? std::move(proxies)
                           : platform::makeSystemProxies(QProcessEnvironment::systemEnvironment());
    SharedState::install(_shared);
}

HTTPSession::~HTTPSession() {
    // What still waits must not start while the thread winds up.
    _shared->sharedQueue.setSuspended(true);
    _shared->thread.stop();
    _shared->sharedQueue.removeAllOperations();
    SharedState::install(nullptr);
}

}  // namespace http
