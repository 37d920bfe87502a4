#pragma once

#include <functional>
#include <memory>

#include "http/request/hand_over.h"

namespace http {

/// Calls on their way to the main thread, in the order in which they were posted. However many
/// gather while the main thread is busy, they cost it one wake-up. What they carry is counted, and
/// whoever posts more than the limit hears when most of it has been taken. Any thread.
class Mailbox : public std::enable_shared_from_this<Mailbox> {
public:
    using Call = std::function<void()>;

    explicit Mailbox(qsizetype limit = handOverLimit) : items_(limit) {}

    /// On the main thread itself, calls at once. `owner` is kept alive until all that is posted now
    /// has been called.
    void post(std::shared_ptr<void> owner, Call call);
    /// A call that carries so many bytes. False: the limit is reached, and `caughtUp` will be
    /// called, on the main thread, when at most half of it is left.
    [[nodiscard]] bool post(std::shared_ptr<void> owner, Call call, qsizetype bytes,
                            const Call& caughtUp);
    [[nodiscard]] qsizetype bytesInFlight() const { return items_.bytesInFlight(); }

private:
    struct Item {
        Call call;
        qsizetype bytes = 0;
    };

    void wakeMainThread(std::shared_ptr<void> owner);
    void deliver();
    [[nodiscard]] bool deliverNext();

    HandOver<Item> items_;
};

}  // namespace http
