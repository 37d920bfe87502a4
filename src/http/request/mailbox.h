#pragma once

#include <QtGlobal>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace http {

/// Calls on their way to the main thread, in the order in which they were posted. However many
/// gather while the main thread is busy, they cost it one wake-up. What they carry is counted, and
/// whoever posts more than the limit hears when most of it has been taken. Any thread.
class Mailbox : public std::enable_shared_from_this<Mailbox> {
public:
    using Call = std::function<void()>;

    static constexpr qsizetype defaultLimit = qsizetype{4} << 20;
    explicit Mailbox(qsizetype limit = defaultLimit) : _limit(limit) {}

    /// On the main thread itself, calls at once. `owner` is kept alive until all that is posted now
    /// has been called.
    void post(std::shared_ptr<void> owner, Call call);
    /// A call that carries so many bytes. False: the limit is reached, and `caughtUp` will be
    /// called, on the main thread, when at most half of it is left.
    [[nodiscard]] bool post(std::shared_ptr<void> owner, Call call, qsizetype bytes,
                            const Call& caughtUp);
    [[nodiscard]] qsizetype bytesInFlight() const;

private:
    struct Item {
        Call call;
        qsizetype bytes = 0;
    };

    void wakeMainThread(std::shared_ptr<void> owner);
    void deliver();
    [[nodiscard]] bool deliverNext();

    const qsizetype _limit;
    mutable std::mutex _lock;  ///< Guards all that follows.
    std::deque<Item> _items;
    bool _isWaking = false;
    qsizetype _bytes = 0;
    Call _caughtUp;
};

}  // namespace http
