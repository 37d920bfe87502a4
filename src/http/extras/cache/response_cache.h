#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <optional>

#include "platform/base/clock.h"
#include "platform/base/error.h"
#include "platform/net/http_message.h"

namespace http {

class HTTPRequest;

/// Bits of a request's cache policy. With none set the cache's own policy counts.
enum CachePolicy : std::uint32_t {
    cachePolicyDefault = 0,
    cachePolicyDoNotRead = 1,
    cachePolicyDoNotWrite = 2,
    cachePolicyAskServerIfModifiedWhenStale = 4,
    cachePolicyAskServerIfModified = 8,
    cachePolicyOnlyLoadIfNotCached = 16,
    cachePolicyDontLoad = 32,
    cachePolicyFallbackToCacheIfLoadFails = 64,
};

/// Where a response stays: until the session is cleared, or for good.
inline constexpr std::uint32_t cacheStorageForSession = 0;
inline constexpr std::uint32_t cacheStoragePermanent = 1;

/// Fields that a cache keeps among the headers of a response.
inline const QString cacheExpiresField = QStringLiteral("X-HTTPRequest-Expires");
inline const QString cacheStatusCodeField = QStringLiteral("X-HTTPRequest-Response-Status-Code");

/// What requests need of a cache of responses. Called on the request's loop, under its lock; the
/// request given is the one that calls. Must be safe for several threads.
class ResponseCache {
public:
    virtual ~ResponseCache() = default;

    [[nodiscard]] virtual std::uint32_t defaultCachePolicy() const = 0;
    /// Whether what is stored answers the request as it stands now: before it is sent, after the
    /// response's head has come, or after it has failed.
    [[nodiscard]] virtual bool canUseCachedDataForRequest(const HTTPRequest& request) = 0;
    /// `maxAge` in seconds; 0: as the server says.
    virtual void storeResponseForRequest(const HTTPRequest& request, platform::Seconds maxAge) = 0;
    virtual void updateExpiryForRequest(const HTTPRequest& request, platform::Seconds maxAge) = 0;
    /// Nothing: not stored.
    [[nodiscard]] virtual std::optional<platform::HTTPHeaders> cachedResponseHeadersForURL(
        const platform::Url& url) = 0;
    [[nodiscard]] virtual std::optional<QByteArray> cachedResponseDataForURL(
        const platform::Url& url) = 0;
    /// Empty: not stored.
    [[nodiscard]] virtual QString pathToCachedResponseDataForURL(const platform::Url& url) = 0;
    /// Nothing: done. The domain of an error is the name of what went wrong.
    virtual std::optional<platform::Error> clearCachedResponsesForStoragePolicy(
        std::uint32_t storagePolicy) = 0;
};

}  // namespace http
