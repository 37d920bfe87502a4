#include "http/request/mailbox.h"

#include <utility>

#include "http/shared/main_thread.h"
#include "platform/base/run_loop.h"

namespace http {

void Mailbox::post(std::shared_ptr<void> owner, Call call) {
    static_cast<void>(post(std::move(owner), std::move(call), 0, nullptr));
}

bool Mailbox::post(std::shared_ptr<void> owner, Call call, qsizetype bytes, const Call& caughtUp) {
    if (isMainThread()) {
        call();
        return true;
    }
    bool mustWake = false;
    bool isWithinLimit = true;
    {
        const std::scoped_lock guard(_lock);
        _items.push_back({std::move(call), bytes});
        _bytes += bytes;
        if (bytes > 0 && _bytes >= _limit) {
            isWithinLimit = false;
            _caughtUp = caughtUp;
        }
        mustWake = !std::exchange(_isWaking, true);
    }
    if (mustWake)
        wakeMainThread(std::move(owner));
    return isWithinLimit;
}

/// The main loop, and not what lies in here, holds the owner: it may own this mailbox.
void Mailbox::wakeMainThread(std::shared_ptr<void> owner) {
    platform::mainRunLoop().post(
        [self = shared_from_this(), owner = std::move(owner)] { self->deliver(); });
}

/// Takes only what is there at first, so that one request cannot hold the thread; and each from the
/// front, so that the order holds even if a call runs the main loop inside itself.
void Mailbox::deliver() {
    std::size_t left = 0;
    {
        const std::scoped_lock guard(_lock);
        left = _items.size();
        _isWaking = false;
    }
    while (left-- > 0 && deliverNext()) {
    }
}

bool Mailbox::deliverNext() {
    Item item;
    {
        const std::scoped_lock guard(_lock);
        if (_items.empty())
            return false;
        item = std::move(_items.front());
        _items.pop_front();
    }
    item.call();
    item.call = nullptr;
    Call caughtUp;
    {
        const std::scoped_lock guard(_lock);
        _bytes -= item.bytes;
        if (_bytes <= _limit / 2)
            caughtUp = std::exchange(_caughtUp, nullptr);
    }
    if (caughtUp)
        caughtUp();
    return true;
}

qsizetype Mailbox::bytesInFlight() const {
    const std::scoped_lock guard(_lock);
    return _bytes;
}

}  // namespace http
