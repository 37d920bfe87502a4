#include "http/shared/waiting_requests.h"

#include <algorithm>
#include <utility>

namespace http {

void WaitingRequests::add(const std::shared_ptr<HTTPRequest>& request) {
    const std::scoped_lock guard(_waitingLock);
    std::erase_if(_requests, [&](const std::weak_ptr<HTTPRequest>& waiting) {
        const auto alive = waiting.lock();
        return alive == nullptr || alive == request;
    });
    _requests.push_back(request);
}

std::vector<std::shared_ptr<HTTPRequest>> WaitingRequests::takeAll() {
    const std::scoped_lock guard(_waitingLock);
    std::vector<std::shared_ptr<HTTPRequest>> alive;
    for (const auto& waiting : std::exchange(_requests, {}))
        if (auto request = waiting.lock())
            alive.push_back(std::move(request));
    return alive;
}

}  // namespace http
