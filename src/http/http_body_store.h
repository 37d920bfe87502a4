#pragma once

#include <QByteArray>
#include <cstdint>

namespace http {

/// Takes the bytes of a body on a thread that may wait for a disk, so that a slow one holds up
/// neither a window nor other transfers. See `HTTPRequest::setBodyStore`.
class HTTPBodyStore {
public:
    virtual ~HTTPBodyStore() = default;

    /// A number of the disk that `store` waits for. Main thread.
    [[nodiscard]] virtual std::uint64_t disk() const = 0;

    /// Takes all of `data`, which comes in order and is never empty. False: it has not been taken;
    /// the delegate is given it and what follows, and should see to it that little does. Never on
    /// two threads at once, nor on the main thread.
    [[nodiscard]] virtual bool store(const QByteArray& data) = 0;
};

}  // namespace http
