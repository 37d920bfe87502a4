#pragma once

#include <QByteArray>

namespace platform {
class ThreadPool;
}

namespace http {

/// Takes the bytes of a body on a thread that may wait for a disk, so that a slow one holds up
/// neither a window nor other transfers. See `HTTPRequest::setBodyStore`.
class HTTPBodyStore {
public:
    virtual ~HTTPBodyStore() = default;

    /// The one thread that writes to the disk for which `store` waits; several stores may have the
    /// same, and take turns. It outlives the request. Main thread.
    [[nodiscard]] virtual platform::ThreadPool& writesOfDisk() const = 0;

    /// Takes all of `data`, which comes in order and is never empty. False: it has not been taken;
    /// the delegate is given it and what follows, and should see to it that little does. Never on
    /// two threads at once, nor on the main thread.
    [[nodiscard]] virtual bool store(const QByteArray& data) = 0;
};

}  // namespace http
