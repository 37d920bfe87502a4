#include "http/shared/waiting_requests.h"

#include <algorithm>
#include <utility>

namespace http {

void WaitingRequests::add(const std::shared_ptr<HTTPRequest>& request) {
    const std::scoped_lock guard(waitingLock_);
    std::erase_if(requests_, [&](const std::weak_ptr<HTTPRequest>& waiting) {
        const auto alive = waiting.lock();
        return alive == nullptr || alive == request;
    });
    requests_.push_back(request);
}

std::vector<std::shared_ptr<HTTPRequest>> WaitingRequests::takeAll() {
    const std::scoped_lock guard(waitingLock_);
    std::vector<std::shared_ptr<HTTPRequest>> alive;
    for (const auto& waiting : std::exchange(requests_, {}))
        if (auto request = waiting.lock())
            alive.push_back(std::move(request));
    return alive;
}

}  // namespace http
