#pragma once

#include <QByteArray>
#include <atomic>
#include <functional>
#include <memory>

#include "http/request/hand_over.h"

namespace platform {
class ThreadPool;
}

namespace http {

class HTTPBodyStore;

/// The way of a body's bytes into its store: in their order, on a thread that may wait for a disk,
/// and bounded. Any thread.
class BodyStorage : public std::enable_shared_from_this<BodyStorage> {
public:
    using Call = std::function<void()>;

    /// Called on any thread.
    struct Receiver {
        /// So many bytes since the last time. Whole blocks of a fast stream are told of by the MiB,
        /// for each message wakes the main thread up.
        std::function<void(qsizetype)> stored;
        /// The store does not take it, nor is it asked again.
        std::function<void(const QByteArray&)> refused;
    };

    BodyStorage(platform::ThreadPool& pool, std::shared_ptr<HTTPBodyStore> store,
                Receiver receiver);
    ~BodyStorage();
    BodyStorage(const BodyStorage&) = delete;
    BodyStorage& operator=(const BodyStorage&) = delete;

    /// False: the limit is reached, and `caughtUp` will be called, on a thread of the pool, when at
    /// most half of it is left.
    [[nodiscard]] bool add(QByteArray data, const Call& caughtUp);
    /// Calls, on a thread of the pool, when all that has been added is dealt with. False: it is,
    /// and nothing will be called.
    [[nodiscard]] bool callWhenIdle(Call call);
    /// Tells the receiver of all that it has not been told of.
    void tellStored();

private:
    void work();
    void store(const QByteArray& data);

    platform::ThreadPool& pool_;
    const std::shared_ptr<HTTPBodyStore> store_;
    const Receiver receiver_;
    bool isRefused_ = false;  ///< Of the one thread that works.
    std::atomic<qsizetype> untold_ = 0;
    HandOver<QByteArray> waiting_{handOverLimit};
};

}  // namespace http
