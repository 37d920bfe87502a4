#pragma once

#include <poll.h>

#include <chrono>
#include <cstddef>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "platform/net/curl_handles.h"

namespace platform {

/// A multi handle and what it asks of its event loop: the sockets to watch and the time of its next
/// call. libcurl is called only for sockets that have something, where its own polling would ask
/// the system about each of them in each turn. One thread at a time.
class CurlDriver {
public:
    CurlDriver();
    CurlDriver(const CurlDriver&) = delete;
    CurlDriver& operator=(const CurlDriver&) = delete;

    [[nodiscard]] CURLM* multi() const { return multi_.get(); }
    /// Milliseconds until `act` is due without any socket; nothing: no such time.
    [[nodiscard]] std::optional<int> timeout() const;
    void appendSockets(std::vector<pollfd>& list) const;
    /// Does what is to be done now. `polled`: the sockets that were appended, with what was found.
    void act(std::span<const pollfd> polled);
    /// A transfer has got or given something.
    void noteProgress() { fruitlessCalls_ = 0; }

private:
    using SteadyClock = std::chrono::steady_clock;

    static int socketChanged(CURL* easy, curl_socket_t socket, int what, void* driver, void*);
    static int timerChanged(CURLM* multi, long milliseconds, void* driver);

    // Before the multi handle, which still reports the sockets that it closes at its end.
    std::unordered_map<curl_socket_t, short> sockets_;
    std::optional<SteadyClock::time_point> deadline_;
    unsigned fruitlessCalls_ = 0;  ///< In a row, of those that it had asked for at once.
    bool isAskedAtOnce_ = false;
    bool isActing_ = false;
    CurlMulti multi_;
};

}  // namespace platform
