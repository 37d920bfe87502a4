#pragma once

#include <poll.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <unordered_set>
#include <vector>

#include "platform/files/descriptor.h"
#include "platform/net/block_pool.h"
#include "platform/net/curl_driver.h"
#include "platform/net/http_read_stream.h"
#include "platform/net/network_loop.h"

namespace platform {

/// What the network loop knows of an exchange that it drives.
class DrivenExchange {
public:
    DrivenExchange() = default;
    virtual ~DrivenExchange() = default;
    DrivenExchange(const DrivenExchange&) = delete;
    DrivenExchange& operator=(const DrivenExchange&) = delete;

    /// libcurl has no more to do with it; its handle is off the loop already.
    virtual void transferEnded(CURLcode result) = 0;
    /// Called outside of libcurl in the turn of an arrival, and in the following ones until it
    /// answers true: it has been considered. `isQuiet`: nothing has arrived in this turn.
    [[nodiscard]] virtual bool settle(bool isQuiet) = 0;
    /// Tells the client what there is to tell. The transfer may die in it.
    virtual void deliver() = 0;
    /// The loop is going away, and the handle must be off it afterwards.
    virtual void loopEnds() = 0;

protected:
    /// A whole block has come: for a while the loop lets bytes gather before it looks again.
    void noteFlow() { flowedAt_ = std::chrono::steady_clock::now(); }

private:
    friend class NetworkLoop::Private;
    std::uint64_t arrivalTurn_ = 0;
    std::chrono::steady_clock::time_point flowedAt_{};
    bool isSettling_ = false;
    bool isReady_ = false;
};

class NetworkLoop::Private {
public:
    explicit Private(Clock& clock);
    ~Private();

    /// On the thread that runs the turns from now on.
    void becomeRunner() { runner_ = std::this_thread::get_id(); }
    void turn();
    void wake();

    /// False: libcurl refused.
    [[nodiscard]] bool add(CURL* easy, DrivenExchange& transfer);
    void removeHandle(CURL* easy);
    /// Its handle must be off already.
    void remove(DrivenExchange& transfer);

    /// Something has come for it, or must be seen to: `settle` will be called. Also from inside of
    /// libcurl's callbacks.
    void noteArrival(DrivenExchange& transfer);
    /// `deliver` will be called, in this turn or the next.
    void markReady(DrivenExchange& transfer);

    /// Inside of libcurl, where most of its calls are forbidden.
    [[nodiscard]] bool isInsideCurl() const { return isInsideCurl_; }
    [[nodiscard]] const std::shared_ptr<BlockPool>& blocks() const { return blocks_; }
    /// Expires with the loop, of whose end only open streams are told.
    [[nodiscard]] std::weak_ptr<const void> life() const { return life_; }
    [[nodiscard]] std::uint64_t turns() const { return turns_; }

    void addWatch(DescriptorWatch& watch) { watches_.push_back(&watch); }
    void removeWatch(DescriptorWatch& watch);

    void addIdentity(HTTPConnectionIdentity::Private& identity) { identities_.insert(&identity); }
    void removeIdentity(HTTPConnectionIdentity::Private& identity) { identities_.erase(&identity); }

    RunLoop calls;

private:
    [[nodiscard]] int pollTimeout() const;
    void poll();
    [[nodiscard]] bool isFlowing() const;
    void drainWakeEvent();
    void callWatches();
    void collectEnded();
    void settleArrivals();
    void deliverReady();

    CurlDriver curl_;
    platform::Descriptor wakeEvent_;  ///< eventfd(2)
    std::atomic<std::thread::id> runner_;
    int wakerToken_;
    std::atomic<bool> isWoken_ = false;
    std::atomic<std::uint64_t> turns_ = 0;
    bool isInsideCurl_ = false;
    std::shared_ptr<BlockPool> blocks_ = std::make_shared<BlockPool>();
    const std::shared_ptr<const void> life_ = std::make_shared<bool>();
    std::unordered_set<DrivenExchange*> transfers_;
    std::unordered_set<HTTPConnectionIdentity::Private*> identities_;
    // Null where one has been taken out while they are called.
    std::vector<DescriptorWatch*> watches_;
    /// As of the last poll: the wake event, one for each of watches_, libcurl's sockets.
    std::vector<pollfd> polled_;
    std::size_t polledWatches_ = 0;
    // Null where a transfer has been taken out.
    std::vector<DrivenExchange*> settling_, ready_, delivering_;
};

}  // namespace platform
