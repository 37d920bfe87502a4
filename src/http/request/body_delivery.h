#pragma once

#include <QByteArray>
#include <functional>
#include <memory>

#include "http/request/request_parts.h"

namespace http {

class BodyStorage;
class HTTPBodyStore;
class HTTPRequest;
class RequestRun;

/// Hands the bytes of a body to the delegate or to the store that it names, and holds the stream
/// back while they are behind.
///
/// The request's loop, under its lock, unless it says otherwise.
class BodyDelivery {
public:
    BodyDelivery(HTTPRequest& request, RequestParts parts, RequestRun& run);
    ~BodyDelivery();
    BodyDelivery(const BodyDelivery&) = delete;
    BodyDelivery& operator=(const BodyDelivery&) = delete;

    /// Another response is to come.
    void reset();
    void deliver(QByteArray data);
    /// Calls `then`, on the loop, when the store has all that has been delivered. False: it has,
    /// and nothing will be called.
    [[nodiscard]] bool callWhenStored(std::function<void()> then);
    /// Lets the delegate know how much is stored.
    void tellStored();

    /// See `HTTPRequest::setBodyStore`. Any thread.
    [[nodiscard]] bool setStore(std::shared_ptr<HTTPBodyStore> store, const QByteArray& first);

private:
    [[nodiscard]] bool isMoreExpected() const;
    [[nodiscard]] bool passOn(QByteArray data);
    [[nodiscard]] const std::function<void()>& callWhenCaughtUp();

    HTTPRequest& request_;
    RequestParts parts_;
    RequestRun& run_;
    bool hasBegun_ = false;                 ///< The first bytes are on their way.
    std::shared_ptr<BodyStorage> storage_;  ///< Null: the delegate takes the body.
    std::function<void()> callWhenCaughtUp_;
};

}  // namespace http
