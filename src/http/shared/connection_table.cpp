#include "http/shared/connection_table.h"

#include <algorithm>

#include "http/shared/transfer_loop.h"
#include "platform/net/http_read_stream.h"
#include "platform/net/url.h"

namespace http {

namespace {

/// Each free connection holds a descriptor, of which a process has about a thousand.
constexpr std::ptrdiff_t maximumFreeConnections = 128;

}  // namespace

ConnectionTarget ConnectionTarget::of(const platform::Url& url) {
    return {url.scheme(), url.host(), url.port().value_or(0)};
}

ConnectionTable::Entry ConnectionTable::acquire(const ConnectionTarget& target,
                                                const std::shared_ptr<TransferLoop>& loop,
                                                const Entry& current, std::uint32_t& requestID,
                                                bool mustBeNew) {
    const std::scoped_lock guard(connectionLock_);
    expirePersistentConnections();
    const auto isUsable = [&](const Entry& entry) {
        return !entry->request && entry->target == target && entry->loop.lock() == loop;
    };
    // Expiry has just taken out what is due, so what is in the table is good.
    Entry entry;
    for (const Entry& other : entries_)
        if (!mustBeNew && isUsable(other) && (entry == nullptr || entry != current))
            entry = other;
    if (entry == nullptr) {
        entry = std::make_shared<ConnectionEntry>();
        entry->id = ++lastID_;
        entry->target = target;
        entry->loop = loop;
        entries_.push_back(entry);
    }
    if (requestID == 0)
        requestID = ++lastRequestID_;
    entry->request = requestID;
    return entry;
}

void ConnectionTable::release(const Entry& entry, std::uint32_t requestID,
                              platform::Seconds timeout, bool keepsSocket) {
    const std::scoped_lock guard(connectionLock_);
    if (entry->request != requestID)
        return;
    if (!keepsSocket)
        dispose(entry);
    entry->request.reset();
    entry->expires = clock_.monotonic() + timeout;
    limitFreeConnections();
}

void ConnectionTable::stampExpiry(const Entry& entry, platform::Seconds timeout) {
    const std::scoped_lock guard(connectionLock_);
    entry->expires = clock_.monotonic() + timeout;
}

void ConnectionTable::remove(const Entry& entry, std::uint32_t requestID) {
    const std::scoped_lock guard(connectionLock_);
    if (entry->request && entry->request != requestID)
        return;
    entry->request.reset();
    std::erase(entries_, entry);
    dispose(entry);
}

void ConnectionTable::expirePersistentConnections() {
    const std::scoped_lock guard(connectionLock_);
    const platform::Seconds now = clock_.monotonic();
    std::erase_if(entries_, [&](const Entry& entry) {
        const bool isDue = !entry->request && (!entry->expires || *entry->expires <= now);
        if (isDue)
            dispose(entry);
        return isDue;
    });
}

void ConnectionTable::limitFreeConnections() {
    const auto isFree = [](const Entry& entry) { return !entry->request; };
    if (std::count_if(entries_.begin(), entries_.end(), isFree) <= maximumFreeConnections)
        return;
    const auto soonest = std::min_element(entries_.begin(), entries_.end(),
                                          [&](const Entry& one, const Entry& other) {
                                              return std::pair(!isFree(one), one->expires) <
                                                     std::pair(!isFree(other), other->expires);
                                          });
    dispose(*soonest);
    entries_.erase(soonest);
}

/// A socket can be closed only where its loop runs.
void ConnectionTable::dispose(const Entry& entry) {
    auto identity = std::move(entry->identity);
    const auto loop = entry->loop.lock();
    if (identity != nullptr && loop != nullptr)
        loop->post([identity = std::move(identity)]() mutable { identity.reset(); });
}

void ConnectionTable::removeAllOfLoop(const TransferLoop* loop) {
    // Sockets close here, on their thread, whoever still holds the entries.
    std::vector<std::shared_ptr<platform::HTTPConnectionIdentity>> closing;
    const std::scoped_lock guard(connectionLock_);
    std::erase_if(entries_, [&](const Entry& entry) {
        const bool isOfLoop = entry->loop.lock().get() == loop;
        if (isOfLoop)
            closing.push_back(std::move(entry->identity));
        return isOfLoop;
    });
}

std::size_t ConnectionTable::count() const {
    const std::scoped_lock guard(connectionLock_);
    return entries_.size();
}

void ConnectionTable::countScheduledStream(int difference) {
    const std::scoped_lock guard(connectionLock_);
    scheduledStreams_ += difference;
}

bool ConnectionTable::hasScheduledStreams() const {
    const std::scoped_lock guard(connectionLock_);
    return scheduledStreams_ > 0;
}

}  // namespace http
