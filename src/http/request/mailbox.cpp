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
    const auto receipt = items_.put({std::move(call), bytes}, bytes, caughtUp);
    if (receipt.mustWake)
        wakeMainThread(std::move(owner));
    return receipt.isWithinLimit;
}

/// The main loop, and not what lies in here, holds the owner: it may own this mailbox.
void Mailbox::wakeMainThread(std::shared_ptr<void> owner) {
    platform::mainRunLoop().post(
        [self = shared_from_this(), owner = std::move(owner)] { self->deliver(); });
}

/// Takes only what is there at first, so that one request cannot hold the thread; and each from the
/// front, so that the order holds even if a call runs the main loop inside itself.
void Mailbox::deliver() {
    std::size_t left = items_.beginBatch();
    while (left-- > 0 && deliverNext()) {
    }
}

bool Mailbox::deliverNext() {
    auto item = items_.take();
    if (!item)
        return false;
    item->call();
    item->call = nullptr;
    items_.letGo(item->bytes);
    return true;
}

}  // namespace http
