#pragma once

#include <memory>
#include <mutex>
#include <vector>

namespace http {

class HTTPRequest;

/// The requests that somebody has been asked about. Any thread.
class WaitingRequests {
public:
    /// Once is enough.
    void add(const std::shared_ptr<HTTPRequest>& request);
    /// Those that still live; none is kept.
    [[nodiscard]] std::vector<std::shared_ptr<HTTPRequest>> takeAll();

private:
    std::mutex waitingLock_;  ///< Guards the list.
    std::vector<std::weak_ptr<HTTPRequest>> requests_;
};

}  // namespace http
