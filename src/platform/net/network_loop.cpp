#include "platform/net/network_loop.h"

#include <poll.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "platform/net/http_connection_identity_private.h"
#include "platform/net/network_loop_private.h"

namespace platform {

namespace {

/// libcurl's receive buffers begin at a cache line: the kernel's copy into a buffer that does not
/// can be several times slower.
void* allocateForCurl(std::size_t size) {
    constexpr std::size_t cacheLine = 64, smallestBuffer = 16 * 1024;
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

void takeOut(std::vector<Transfer*>& list, Transfer* transfer) {
    std::replace(list.begin(), list.end(), transfer, static_cast<Transfer*>(nullptr));
}

}  // namespace

NetworkLoop::Private::Private(Clock& clock)
    : calls(clock), multi_((prepareProcess(), curl_multi_init()), &curl_multi_cleanup) {
    calls.setWaker([this] { wake(); });
    wakerToken_ = clock.addWaker([this] { wake(); });
}

NetworkLoop::Private::~Private() {
    calls.clock().removeWaker(wakerToken_);
    calls.setWaker({});
    while (!transfers_.empty())
        (*transfers_.begin())->loopEnds();
    // Shared connections must be closed before the multi handle that opened them.
    for (HTTPConnectionIdentity::Private* identity : identities_)
        identity->loopEnds();
}

void NetworkLoop::Private::wake() {
    if (!isWoken_.exchange(true))
        curl_multi_wakeup(multi_.get());
}

bool NetworkLoop::Private::add(CURL* easy, Transfer& transfer) {
    if (curl_easy_setopt(easy, CURLOPT_PRIVATE, &transfer) != CURLE_OK ||
        curl_multi_add_handle(multi_.get(), easy) != CURLM_OK)
        return false;
    transfers_.insert(&transfer);
    return true;
}

void NetworkLoop::Private::removeHandle(CURL* easy) {
    curl_multi_remove_handle(multi_.get(), easy);
}

void NetworkLoop::Private::remove(Transfer& transfer) {
    transfers_.erase(&transfer);
    for (auto* list : {&settling_, &ready_, &delivering_})
        takeOut(*list, &transfer);
    transfer.isSettling_ = transfer.isReady_ = false;
    if (transfers_.empty())
        blocks_->clear();
}

int NetworkLoop::Private::pollTimeout() const {
    constexpr int forEver = std::numeric_limits<int>::max();
    if (!settling_.empty() || !ready_.empty())
        return 0;
    const auto deadline = calls.nextDeadline();
    const Seconds wait = deadline ? calls.clock().sleepUntil(*deadline) : -1;
    if (wait < 0 || wait > forEver / 1000)
        return forEver;
    return static_cast<int>(std::ceil(wait * 1000));
}

void NetworkLoop::Private::turn() {
    ++turns_;
    poll();
    // Before what was posted is looked at: a later post wakes the next poll.
    isWoken_.exchange(false);
    int running = 0;
    isInsideCurl_ = true;
    curl_multi_perform(multi_.get(), &running);
    isInsideCurl_ = false;
    collectEnded();
    settleArrivals();
    callWatches();
    calls.runDue();
    deliverReady();
}

void NetworkLoop::Private::poll() {
    std::erase(watches_, nullptr);
    watched_.clear();
    for (const DescriptorWatch* watch : watches_)
        watched_.push_back({watch->descriptor_, CURL_WAIT_POLLIN, 0});
    curl_multi_poll(multi_.get(), watched_.data(), static_cast<unsigned>(watched_.size()),
                    pollTimeout(), nullptr);
}

void NetworkLoop::Private::removeWatch(DescriptorWatch& watch) {
    std::replace(watches_.begin(), watches_.end(), &watch, static_cast<DescriptorWatch*>(nullptr));
}

/// libcurl does not tell a descriptor that has ended from one with nothing to read.
void NetworkLoop::Private::callWatches() {
    constexpr short anything = POLLIN | POLLHUP | POLLERR;
    for (std::size_t i = 0; i < watched_.size(); ++i) {
        pollfd now{watched_[i].fd, POLLIN, 0};
        if (watches_[i] == nullptr || ::poll(&now, 1, 0) <= 0 || (now.revents & anything) == 0)
            continue;
        const auto ready = watches_[i]->ready_;
        ready();
    }
}

void NetworkLoop::Private::collectEnded() {
    int left = 0;
    while (const CURLMsg* const message = curl_multi_info_read(multi_.get(), &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        const CURLcode result = message->data.result;
        char* owner = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &owner);
        reinterpret_cast<Transfer*>(owner)->transferEnded(result);
    }
}

void NetworkLoop::Private::noteArrival(Transfer& transfer) {
    transfer.arrivalTurn_ = turns_;
    if (!std::exchange(transfer.isSettling_, true))
        settling_.push_back(&transfer);
}

void NetworkLoop::Private::markReady(Transfer& transfer) {
    if (!std::exchange(transfer.isReady_, true))
        ready_.push_back(&transfer);
}

void NetworkLoop::Private::settleArrivals() {
    std::erase_if(settling_, [this](Transfer* transfer) {
        if (transfer == nullptr)
            return true;
        const bool isSettled = transfer->settle(transfer->arrivalTurn_ != turns_);
        transfer->isSettling_ = !isSettled;
        return isSettled;
    });
}

void NetworkLoop::Private::deliverReady() {
    delivering_.swap(ready_);
    for (std::size_t i = 0; i < delivering_.size(); ++i) {
        Transfer* const transfer = delivering_[i];
        if (transfer == nullptr)
            continue;
        transfer->isReady_ = false;
        transfer->deliver();
    }
    delivering_.clear();
}

NetworkLoop::NetworkLoop(Clock& clock) : private_(std::make_unique<Private>(clock)) {}
NetworkLoop::~NetworkLoop() = default;

RunLoop& NetworkLoop::calls() {
    return private_->calls;
}

void NetworkLoop::runUntil(const std::function<bool()>& done) {
    do
        private_->turn();
    while (!done());
}

void NetworkLoop::wake() {
    private_->wake();
}

DescriptorWatch::DescriptorWatch(NetworkLoop& loop, int descriptor, std::function<void()> ready)
    : loop_(loop), descriptor_(descriptor), ready_(std::move(ready)) {
    loop_.internals().addWatch(*this);
}

DescriptorWatch::~DescriptorWatch() {
    loop_.internals().removeWatch(*this);
}

NetworkThread::NetworkThread(Clock& clock)
    : loop_(std::make_unique<NetworkLoop>(clock)),
      thread_([this] { loop_->runUntil([this] { return isOver_; }); }) {}

NetworkThread::~NetworkThread() {
    loop_->calls().post([this] { isOver_ = true; });
    thread_.join();
}

}  // namespace platform
