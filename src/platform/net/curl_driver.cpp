#include "platform/net/curl_driver.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace platform {
namespace {

/// libcurl's receive buffers begin at a cache line: the kernel's copy into a buffer that does not
/// can be several times slower.
void* allocateForCurl(std::size_t size) {
    constexpr std::size_t cacheLine = 64, smallestBuffer = 16UL * 1024;
    if (size < smallestBuffer)
        return std::malloc(size);
    return std::aligned_alloc(cacheLine, (size + cacheLine - 1) / cacheLine * cacheLine);
}

/// To be done once, and before any other thread uses libcurl.
void prepareProcess() {
    static const CURLcode prepared = [] {
        // libcurl is told to leave signals alone, and a server that hangs up must not end us.
        struct sigaction action {};
        if (sigaction(SIGPIPE, nullptr, &action) == 0 && action.sa_handler == SIG_DFL)
            std::signal(SIGPIPE, SIG_IGN);
        return curl_global_init_mem(CURL_GLOBAL_DEFAULT, allocateForCurl, std::free, std::realloc,
                                    ::strdup, std::calloc);
    }();
    static_cast<void>(prepared);
}

short pollEvents(int what) {
    switch (what) {
        case CURL_POLL_IN:
            return POLLIN;
        case CURL_POLL_OUT:
            return POLLOUT;
        case CURL_POLL_INOUT:
            return POLLIN | POLLOUT;
        default:
            return 0;
    }
}

int curlEvents(short found) {
    int events = 0;
    if ((found & (POLLIN | POLLHUP)) != 0)
        events |= CURL_CSELECT_IN;
    if ((found & POLLOUT) != 0)
        events |= CURL_CSELECT_OUT;
    if ((found & (POLLERR | POLLNVAL)) != 0)
        events |= CURL_CSELECT_ERR;
    return events;
}

}  // namespace

CurlDriver::CurlDriver() : multi_((prepareProcess(), curl_multi_init()), &curl_multi_cleanup) {
    curl_multi_setopt(multi(), CURLMOPT_SOCKETFUNCTION, &socketChanged);
    curl_multi_setopt(multi(), CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(multi(), CURLMOPT_TIMERFUNCTION, &timerChanged);
    curl_multi_setopt(multi(), CURLMOPT_TIMERDATA, this);
}

int CurlDriver::socketChanged(CURL*, curl_socket_t socket, int what, void* driver, void*) {
    auto& sockets = static_cast<CurlDriver*>(driver)->sockets_;
    if (what == CURL_POLL_REMOVE)
        sockets.erase(socket);
    else
        sockets[socket] = pollEvents(what);
    return 0;
}

/// While a transfer is paused with something left to be read, some releases (8.14) ask to be called
/// at once, and again, without end.
int CurlDriver::timerChanged(CURLM*, long milliseconds, void* driver) {
    constexpr unsigned mostFruitlessCalls = 3;
    constexpr long rest = 100;
    auto& self = *static_cast<CurlDriver*>(driver);
    if (!self.isActing_)
        self.noteProgress();
    self.isAskedAtOnce_ = milliseconds == 0;
    const bool isInVain = self.isAskedAtOnce_ && self.fruitlessCalls_ > mostFruitlessCalls;
    const long wait = isInVain ? rest : milliseconds;
    if (wait < 0)
        self.deadline_.reset();
    else
        self.deadline_ = SteadyClock::now() + std::chrono::milliseconds(wait);
    return 0;
}

std::optional<int> CurlDriver::timeout() const {
    if (!deadline_)
        return std::nullopt;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline_ - SteadyClock::now());
    return static_cast<int>(
        std::clamp<long long>(left.count(), 0, std::numeric_limits<int>::max()));
}

void CurlDriver::appendSockets(std::vector<pollfd>& list) const {
    for (const auto& [socket, events] : sockets_)
        list.push_back({socket, events, 0});
}

void CurlDriver::act(std::span<const pollfd> polled) {
    int running = 0;
    isActing_ = true;
    for (const pollfd& socket : polled)
        if (const int events = curlEvents(socket.revents); events != 0) {
            noteProgress();
            curl_multi_socket_action(multi(), socket.fd, events, &running);
        }
    if (deadline_ && *deadline_ <= SteadyClock::now()) {
        deadline_.reset();
        fruitlessCalls_ = isAskedAtOnce_ ? fruitlessCalls_ + 1 : 0;
        curl_multi_socket_action(multi(), CURL_SOCKET_TIMEOUT, 0, &running);
    }
    isActing_ = false;
}

}  // namespace platform
