#include "platform/net/network_loop.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/net/http_connection_identity_private.h"
#include "platform/net/network_loop_private.h"

namespace platform {

namespace {

/// As long as a fast stream's bytes may gather in the socket, which holds some megabytes.
constexpr auto gatheringTime = std::chrono::microseconds(500);

void takeOut(std::vector<DrivenExchange*>& list, DrivenExchange* transfer) {
    std::replace(list.begin(), list.end(), transfer, static_cast<DrivenExchange*>(nullptr));
}

}  // namespace

NetworkLoop::Private::Private(Clock& clock)
    : calls(clock), wakeEvent_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
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
    // The runner looks at the flag before it sleeps again.
    if (isWoken_.exchange(true) || runner_ == std::this_thread::get_id())
        return;
    eventfd_write(wakeEvent_.get(), 1);
}

bool NetworkLoop::Private::add(CURL* easy, DrivenExchange& transfer) {
    if (curl_easy_setopt(easy, CURLOPT_PRIVATE, &transfer) != CURLE_OK ||
        curl_multi_add_handle(curl_.multi(), easy) != CURLM_OK)
        return false;
    transfers_.insert(&transfer);
    return true;
}

void NetworkLoop::Private::removeHandle(CURL* easy) {
    curl_multi_remove_handle(curl_.multi(), easy);
}

void NetworkLoop::Private::remove(DrivenExchange& transfer) {
    transfers_.erase(&transfer);
    for (auto* list : {&settling_, &ready_, &delivering_})
        takeOut(*list, &transfer);
    transfer.isSettling_ = transfer.isReady_ = false;
    if (transfers_.empty())
        blocks_->clear();
}

int NetworkLoop::Private::pollTimeout() const {
    constexpr int forEver = std::numeric_limits<int>::max();
    if (isWoken_ || !settling_.empty() || !ready_.empty())
        return 0;
    const int curlWait = curl_.timeout().value_or(forEver);
    const auto deadline = calls.nextDeadline();
    const Seconds wait = deadline ? calls.clock().sleepUntil(*deadline) : -1;
    return wait < 0 || wait * 1000 >= curlWait ? curlWait
                                               : static_cast<int>(std::ceil(wait * 1000));
}

void NetworkLoop::Private::turn() {
    ++turns_;
    poll();
    isInsideCurl_ = true;
    curl_.act(std::span(polled_).subspan(1 + polledWatches_));
    isInsideCurl_ = false;
    collectEnded();
    settleArrivals();
    callWatches();
    calls.runDue();
    deliverReady();
}

void NetworkLoop::Private::poll() {
    std::erase(watches_, nullptr);
    polledWatches_ = watches_.size();
    polled_.assign(1, {wakeEvent_.get(), POLLIN, 0});
    for (const DescriptorWatch* watch : watches_)
        polled_.push_back({watch->descriptor_, POLLIN, 0});
    curl_.appendSockets(polled_);
    int found = ::poll(polled_.data(), polled_.size(), pollTimeout());
    if (found == 0 && isFlowing()) {
        std::this_thread::sleep_for(gatheringTime);
        found = ::poll(polled_.data(), polled_.size(), 0);
    }
    if (found < 0)
        for (pollfd& descriptor : polled_)
            descriptor.revents = 0;
    drainWakeEvent();
}

/// Something has just come in of a stream that is faster than one block in a while. Without a rest
/// the thread would be woken for each few kilobytes of it.
bool NetworkLoop::Private::isFlowing() const {
    constexpr auto aWhile = std::chrono::milliseconds(20);
    if (settling_.empty())
        return false;
    const auto since = std::chrono::steady_clock::now() - aWhile;
    return std::any_of(settling_.begin(), settling_.end(), [&](const DrivenExchange* transfer) {
        return transfer != nullptr && transfer->flowedAt_ >= since;
    });
}

/// Before what was posted is looked at: a later post wakes the next poll.
void NetworkLoop::Private::drainWakeEvent() {
    eventfd_t count = 0;
    if (polled_.front().revents != 0)
        eventfd_read(wakeEvent_.get(), &count);
    isWoken_.exchange(false);
}

void NetworkLoop::Private::removeWatch(DescriptorWatch& watch) {
    std::replace(watches_.begin(), watches_.end(), &watch, static_cast<DescriptorWatch*>(nullptr));
}

void NetworkLoop::Private::callWatches() {
    constexpr short anything = POLLIN | POLLHUP | POLLERR;
    for (std::size_t i = 0; i < polledWatches_; ++i) {
        if (watches_[i] == nullptr || (polled_[1 + i].revents & anything) == 0)
            continue;
        const auto ready = watches_[i]->ready_;
        ready();
    }
}

void NetworkLoop::Private::collectEnded() {
    int left = 0;
    while (const CURLMsg* const message = curl_multi_info_read(curl_.multi(), &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        const CURLcode result = message->data.result;
        char* owner = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &owner);
        reinterpret_cast<DrivenExchange*>(owner)->transferEnded(result);
    }
}

void NetworkLoop::Private::noteArrival(DrivenExchange& transfer) {
    curl_.noteProgress();
    transfer.arrivalTurn_ = turns_;
    if (!std::exchange(transfer.isSettling_, true))
        settling_.push_back(&transfer);
}

void NetworkLoop::Private::markReady(DrivenExchange& transfer) {
    if (!std::exchange(transfer.isReady_, true))
        ready_.push_back(&transfer);
}

void NetworkLoop::Private::settleArrivals() {
    std::erase_if(settling_, [this](DrivenExchange* transfer) {
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
        DrivenExchange* const transfer = delivering_[i];
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
    private_->becomeRunner();
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
