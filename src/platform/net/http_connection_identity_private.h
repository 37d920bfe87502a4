#pragma once

#include <memory>

#include "platform/net/curl_handles.h"
#include "platform/net/http_read_stream.h"

namespace platform {

/// Connections and TLS sessions that one identity keeps to itself.
class HTTPConnectionIdentity::Private {
public:
    explicit Private(NetworkLoop& loop);
    ~Private();
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    /// Whoever holds it keeps the connections open. Null: the loop is gone.
    [[nodiscard]] const std::shared_ptr<CURLSH>& share() const { return share_; }
    void loopEnds();

private:
    NetworkLoop* loop_;
    std::shared_ptr<CURLSH> share_;
};

}  // namespace platform
