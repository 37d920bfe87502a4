#pragma once

#include <QString>
#include <memory>
#include <mutex>
#include <optional>

#include "http/extras/cache/cached_headers.h"
#include "http/extras/cache/response_cache.h"
#include "platform/base/error.h"

namespace http {

/// A cache of responses on disk: for each URL a property list of its headers and a file with its
/// body, uncompressed, in one of two folders, of which one is emptied with the session.
///
/// Any thread.
class HTTPDownloadCache final : public ResponseCache {
public:
    /// `clock`: for expiry.
    explicit HTTPDownloadCache(const platform::Clock& clock) : clock_(clock) {}

    /// In the user's cache folder; made on first use, of the session that lives then.
    [[nodiscard]] static std::shared_ptr<HTTPDownloadCache> sharedCache();

    /// Makes the two folders and empties the session's, of the former path too. Nothing: done.
    [[nodiscard]] std::optional<platform::Error> setStoragePath(const QString& path);
    [[nodiscard]] QString storagePath() const;
    /// Whether expiry and "no-cache" count; yes at first.
    void setShouldRespectCacheControlHeaders(bool respects);
    [[nodiscard]] bool shouldRespectCacheControlHeaders() const;
    void setDefaultCachePolicy(std::uint32_t policy);
    [[nodiscard]] std::uint32_t defaultCachePolicy() const override;

    [[nodiscard]] bool canUseCachedDataForRequest(const HTTPRequest& request) override;
    [[nodiscard]] bool isCachedDataCurrentForRequest(const HTTPRequest& request);
    void storeResponseForRequest(const HTTPRequest& request, platform::Seconds maxAge) override;
    void updateExpiryForRequest(const HTTPRequest& request, platform::Seconds maxAge) override;
    [[nodiscard]] std::optional<platform::HTTPHeaders> cachedResponseHeadersForURL(
        const platform::Url& url) override;
    [[nodiscard]] std::optional<QByteArray> cachedResponseDataForURL(
        const platform::Url& url) override;

    /// Of a file that exists, the session's first. Empty: none.
    [[nodiscard]] QString pathToCachedResponseDataForURL(const platform::Url& url) override;
    [[nodiscard]] QString pathToCachedResponseHeadersForURL(const platform::Url& url);
    /// Where it would go. Empty: nowhere.
    [[nodiscard]] QString pathToStoreCachedResponseDataForRequest(const HTTPRequest& request);
    [[nodiscard]] QString pathToStoreCachedResponseHeadersForRequest(const HTTPRequest& request);

    void removeCachedDataForURL(const platform::Url& url);
    void removeCachedDataForRequest(const HTTPRequest& request);
    /// Nothing: done.
    std::optional<platform::Error> clearCachedResponsesForStoragePolicy(
        std::uint32_t storagePolicy) override;

private:
    [[nodiscard]] QString folder(std::uint32_t storagePolicy) const;
    [[nodiscard]] QString existingFile(const platform::Url& url, const QString& extension) const;
    [[nodiscard]] QString fileToStore(const HTTPRequest& request, const QString& extension) const;
    [[nodiscard]] std::optional<CachedHeaders> cachedHeaders(const platform::Url& url);
    [[nodiscard]] bool isWorthStoring(const HTTPRequest& request) const;
    /// False: it has not been kept, or cannot be.
    [[nodiscard]] bool storeBody(const HTTPRequest& request);

    const platform::Clock& clock_;
    mutable std::recursive_mutex accessLock_;  ///< Guards the fields below and the files.
    std::uint32_t defaultCachePolicy_ = cachePolicyAskServerIfModifiedWhenStale;
    QString storagePath_;
    bool shouldRespectCacheControlHeaders_ = true;
};

}  // namespace http
