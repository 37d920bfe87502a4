#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "platform/base/clock.h"
#include "platform/base/error.h"
#include "platform/net/url.h"

namespace links {

struct PageRequest {
    platform::Url url;
    /// For the whole answer to arrive.
    platform::Seconds timeOut = 60;
    /// A longer body counts as no data.
    qint64 maximumBytes = qint64{16} * 1024 * 1024;
};

struct FetchedPage {
    /// The body, whatever the status code. Nothing: none came back.
    std::optional<QByteArray> data;
    /// The value of "Content-Type". Empty: none.
    QString contentType;
    /// Why there is no data.
    platform::Error error;
    /// What the server answered, for the log. Empty: nothing.
    QString response;
};

/// Fetches web pages. Implemented above this layer.
class PageFetcher {
public:
    virtual ~PageFetcher() = default;

    /// A plain GET that follows redirects and passes caches by, with nothing of a download's own
    /// settings: no referrer, no cookies. Blocks until the answer is there. Any thread, several at
    /// a time.
    [[nodiscard]] virtual FetchedPage fetchSynchronously(const PageRequest& request) = 0;
};

}  // namespace links
