#pragma once

#include <QtGlobal>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <utility>

namespace http {

/// Items on their way from one thread to another, in their order. What they carry is counted, and
/// whoever puts in more than the limit hears when most of it has been dealt with. Any thread; one
/// takes at a time.
template <typename Item>
class HandOver {
public:
    using Call = std::function<void()>;
    struct Receipt {
        bool mustWake;  ///< Nobody is about to take it.
        /// False: `caughtUp` will be called, by whoever lets go, when at most half is left.
        bool isWithinLimit;
    };

    explicit HandOver(qsizetype limit) : limit_(limit) {}

    /// One without bytes is always within the limit.
    [[nodiscard]] Receipt put(Item item, qsizetype bytes, const Call& caughtUp) {
        const std::scoped_lock guard(lock_);
        items_.push_back(std::move(item));
        bytes_ += bytes;
        const bool isWithinLimit = bytes == 0 || bytes_ < limit_;
        if (!isWithinLimit)
            caughtUp_ = caughtUp;
        return {!std::exchange(isAwake_, true), isWithinLimit};
    }

    /// How many there are for a taker that takes no more than these; the next one put in wakes it
    /// again.
    [[nodiscard]] std::size_t beginBatch() {
        const std::scoped_lock guard(lock_);
        isAwake_ = false;
        return items_.size();
    }

    /// Nothing: there is none, and the next one put in wakes the taker again.
    [[nodiscard]] std::optional<Item> take() {
        Call whenIdle;
        {
            const std::scoped_lock guard(lock_);
            if (!items_.empty()) {
                std::optional<Item> item(std::move(items_.front()));
                items_.pop_front();
                return item;
            }
            isAwake_ = false;
            whenIdle = std::exchange(whenIdle_, nullptr);
        }
        if (whenIdle)
            whenIdle();
        return std::nullopt;
    }

    /// So many bytes of what has been taken are dealt with.
    void letGo(qsizetype bytes) {
        Call caughtUp;
        {
            const std::scoped_lock guard(lock_);
            bytes_ -= bytes;
            if (bytes_ <= limit_ / 2)
                caughtUp = std::exchange(caughtUp_, nullptr);
        }
        if (caughtUp)
            caughtUp();
    }

    /// Calls, where items are taken, when there are no more. False: there are none, and nothing
    /// will be called.
    [[nodiscard]] bool callWhenIdle(Call call) {
        const std::scoped_lock guard(lock_);
        if (isAwake_)
            whenIdle_ = std::move(call);
        return isAwake_;
    }

    [[nodiscard]] qsizetype bytesInFlight() const {
        const std::scoped_lock guard(lock_);
        return bytes_;
    }

private:
    const qsizetype limit_;
    mutable std::mutex lock_;  ///< Guards all that follows; nothing is called under it.
    std::deque<Item> items_;
    bool isAwake_ = false;
    qsizetype bytes_ = 0;  ///< With what has been taken and not yet let go.
    Call caughtUp_, whenIdle_;
};

/// The most that one request has on the way to the main thread, and again to its store.
inline constexpr qsizetype handOverLimit = qsizetype{4} << 20;

}  // namespace http
