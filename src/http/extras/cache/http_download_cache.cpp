#include "http/extras/cache/http_download_cache.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <array>

#include "http/extras/cache/cache_keys.h"
#include "http/http_request.h"
#include "http/shared/shared_state.h"
#include "platform/files/files.h"
#include "platform/net/status_codes.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::Error;
using platform::HTTPHeaders;
using platform::Url;

namespace {

constexpr qint64 largestHeaders = qint64{1} << 20;
constexpr qint64 largestBodyInMemory = qint64{1} << 30;
const QString headersExtension = u"cachedheaders"_s;

Error cacheError(const QString& name, const QString& text) {
    return {name, 0, text, nullptr};
}

std::optional<Error> makeFolder(const QString& path) {
    const QFileInfo existing(path);
    if (existing.exists() && !existing.isDir())
        return cacheError(u"FileExistsAtCachePath"_s,
                          u"Cannot create a directory for the cache at '%1', because a file "
                          "already exists"_s.arg(path));
    if (!QDir().mkpath(path))
        return cacheError(u"FailedToCreateCacheDirectory"_s,
                          u"Failed to create a directory for the cache at '%1'"_s.arg(path));
    return std::nullopt;
}

}  // namespace

std::shared_ptr<HTTPDownloadCache> HTTPDownloadCache::sharedCache() {
    static const auto cache = [] {
        auto made = std::make_shared<HTTPDownloadCache>(SharedState::current()->clock);
        static_cast<void>(made->setStoragePath(
            QDir(platform::userCacheFolder()).filePath(u"HTTPRequestCache"_s)));
        return made;
    }();
    return cache;
}

// Settings.

std::optional<Error> HTTPDownloadCache::setStoragePath(const QString& path) {
    const std::scoped_lock guard(accessLock_);
    static_cast<void>(clearCachedResponsesForStoragePolicy(cacheStorageForSession));
    storagePath_ = path;
    for (const std::uint32_t policy : {cacheStorageForSession, cacheStoragePermanent})
        if (auto error = makeFolder(folder(policy)))
            return error;
    return clearCachedResponsesForStoragePolicy(cacheStorageForSession);
}

QString HTTPDownloadCache::storagePath() const {
    const std::scoped_lock guard(accessLock_);
    return storagePath_;
}

void HTTPDownloadCache::setShouldRespectCacheControlHeaders(bool respects) {
    const std::scoped_lock guard(accessLock_);
    shouldRespectCacheControlHeaders_ = respects;
}

bool HTTPDownloadCache::shouldRespectCacheControlHeaders() const {
    const std::scoped_lock guard(accessLock_);
    return shouldRespectCacheControlHeaders_;
}

void HTTPDownloadCache::setDefaultCachePolicy(std::uint32_t policy) {
    const std::scoped_lock guard(accessLock_);
    defaultCachePolicy_ =
        policy == cachePolicyDefault ? cachePolicyAskServerIfModifiedWhenStale : policy;
}

std::uint32_t HTTPDownloadCache::defaultCachePolicy() const {
    const std::scoped_lock guard(accessLock_);
    return defaultCachePolicy_;
}

// Files.

QString HTTPDownloadCache::folder(std::uint32_t storagePolicy) const {
    if (storagePath_.isEmpty())
        return {};
    const bool isForSession = storagePolicy == cacheStorageForSession;
    return QDir(storagePath_).filePath(isForSession ? u"SessionStore"_s : u"PermanentStore"_s);
}

QString HTTPDownloadCache::existingFile(const Url& url, const QString& extension) const {
    const QString key = cacheKeyForURL(url);
    if (storagePath_.isEmpty() || key.isEmpty())
        return {};
    for (const std::uint32_t policy : {cacheStorageForSession, cacheStoragePermanent}) {
        const QString path = QDir(folder(policy)).filePath(u"%1.%2"_s.arg(key, extension));
        if (QFile::exists(path))
            return path;
    }
    return {};
}

QString HTTPDownloadCache::fileToStore(const HTTPRequest& request, const QString& extension) const {
    const QString key = cacheKeyForURL(request.url());
    if (storagePath_.isEmpty() || key.isEmpty())
        return {};
    return QDir(folder(request.cacheStoragePolicy())).filePath(u"%1.%2"_s.arg(key, extension));
}

QString HTTPDownloadCache::pathToCachedResponseDataForURL(const Url& url) {
    const std::scoped_lock guard(accessLock_);
    return existingFile(url, cacheExtensionForURL(url));
}

QString HTTPDownloadCache::pathToCachedResponseHeadersForURL(const Url& url) {
    const std::scoped_lock guard(accessLock_);
    return existingFile(url, headersExtension);
}

QString HTTPDownloadCache::pathToStoreCachedResponseDataForRequest(const HTTPRequest& request) {
    const auto held = request.holdStill();
    const std::scoped_lock guard(accessLock_);
    return fileToStore(request, cacheExtensionForURL(request.url()));
}

QString HTTPDownloadCache::pathToStoreCachedResponseHeadersForRequest(const HTTPRequest& request) {
    const auto held = request.holdStill();
    const std::scoped_lock guard(accessLock_);
    return fileToStore(request, headersExtension);
}

std::optional<CachedHeaders> HTTPDownloadCache::cachedHeaders(const Url& url) {
    const QString path = existingFile(url, headersExtension);
    if (path.isEmpty())
        return std::nullopt;
    return decodedCachedHeaders(platform::readFile(path, largestHeaders).data);
}

std::optional<HTTPHeaders> HTTPDownloadCache::cachedResponseHeadersForURL(const Url& url) {
    const std::scoped_lock guard(accessLock_);
    const auto cached = cachedHeaders(url);
    return cached ? std::optional(cached->merged()) : std::nullopt;
}

std::optional<QByteArray> HTTPDownloadCache::cachedResponseDataForURL(const Url& url) {
    const std::scoped_lock guard(accessLock_);
    const QString path = pathToCachedResponseDataForURL(url);
    if (path.isEmpty())
        return std::nullopt;
    auto contents = platform::readFile(path, largestBodyInMemory);
    return contents.error ? std::nullopt : std::optional(std::move(contents.data));
}

void HTTPDownloadCache::removeCachedDataForURL(const Url& url) {
    const std::scoped_lock guard(accessLock_);
    for (const QString& path :
         {pathToCachedResponseHeadersForURL(url), pathToCachedResponseDataForURL(url)})
        if (!path.isEmpty())
            QFile::remove(path);
}

void HTTPDownloadCache::removeCachedDataForRequest(const HTTPRequest& request) {
    removeCachedDataForURL(request.url());
}

std::optional<Error> HTTPDownloadCache::clearCachedResponsesForStoragePolicy(
    std::uint32_t storagePolicy) {
    const std::scoped_lock guard(accessLock_);
    const QString path = folder(storagePolicy);
    if (path.isEmpty() || !QFile::exists(path))
        return std::nullopt;
    QDir store(path);
    if (!store.isReadable())
        return cacheError(u"FailedToTraverseCacheDirectory"_s,
                          u"Listing cache directory failed at path '%1'"_s.arg(path));
    const QStringList names =
        store.entryList(QDir::Files | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString& name : names)
        if (!store.remove(name))
            return cacheError(u"FailedToRemoveCacheFile"_s,
                              u"Failed to remove cached data at path '%1'"_s.arg(path));
    return std::nullopt;
}

// Decisions.

bool HTTPDownloadCache::canUseCachedDataForRequest(const HTTPRequest& request) {
    const auto held = request.holdStill();
    const std::scoped_lock guard(accessLock_);
    const std::uint32_t policy = request.cachePolicy();
    if ((policy & cachePolicyDoNotRead) != 0)
        return false;
    if ((policy & cachePolicyDontLoad) != 0)
        return true;
    if (!cachedHeaders(request.url()) || pathToCachedResponseDataForURL(request.url()).isEmpty())
        return false;
    if ((policy & cachePolicyOnlyLoadIfNotCached) != 0)
        return true;
    if (request.complete() && (policy & cachePolicyFallbackToCacheIfLoadFails) != 0)
        return true;
    if ((policy & cachePolicyAskServerIfModifiedWhenStale) != 0)
        return isCachedDataCurrentForRequest(request);
    if ((policy & cachePolicyAskServerIfModified) != 0)
        return request.responseHeaders() && isCachedDataCurrentForRequest(request);
    return false;
}

bool HTTPDownloadCache::isCachedDataCurrentForRequest(const HTTPRequest& request) {
    const auto held = request.holdStill();
    const std::scoped_lock guard(accessLock_);
    const auto cached = cachedHeaders(request.url());
    if (!cached || pathToCachedResponseDataForURL(request.url()).isEmpty())
        return false;
    if (request.responseStatusCode() == platform::status::notModified)
        return true;
    // Also of a response whose body is still to come: a server that was asked has answered.
    if (const auto headers = request.responseHeaders(); headers) {
        const auto agree = [&](const QString& name) {
            const auto value = headers->value(name);
            return value && value == cached->headers.value(name);
        };
        if (!agree(u"Etag"_s) || !agree(u"Last-Modified"_s))
            return false;
    }
    return !shouldRespectCacheControlHeaders_ ||
           (cached->expires && *cached->expires >= clock_.wall());
}

bool HTTPDownloadCache::isWorthStoring(const HTTPRequest& request) const {
    constexpr std::array storedStatuses{200, 301, 302, 303, 307};
    const auto headers = request.responseHeaders();
    return !request.error() && headers && (request.cachePolicy() & cachePolicyDoNotWrite) == 0 &&
           std::find(storedStatuses.begin(), storedStatuses.end(), request.responseStatusCode()) !=
               storedStatuses.end() &&
           (!shouldRespectCacheControlHeaders_ || serverAllowsResponseCaching(*headers));
}

void HTTPDownloadCache::storeResponseForRequest(const HTTPRequest& request,
                                                platform::Seconds maxAge) {
    const auto held = request.holdStill();
    const std::scoped_lock guard(accessLock_);
    const QString path = fileToStore(request, headersExtension);
    if (path.isEmpty() || !isWorthStoring(request))
        return;
    CachedHeaders cached;
    cached.headers = *request.responseHeaders();
    // The body is stored as it is without it.
    if (request.isResponseCompressed())
        cached.headers.remove(u"Content-Encoding"_s);
    cached.statusCode = request.responseStatusCode();
    cached.expires = expiryDate(*request.responseHeaders(), maxAge, clock_.wall());
    // The former head does not belong to this body, nor this head to the former body.
    QFile::remove(path);
    if (storeBody(request))
        static_cast<void>(platform::writeFileAtomically(path, encodedCachedHeaders(cached)));
}

bool HTTPDownloadCache::storeBody(const HTTPRequest& request) {
    const QString path = pathToStoreCachedResponseDataForRequest(request);
    const QString downloaded = request.downloadDestinationPath();
    auto data = request.responseData();
    // Redirects often have an empty one.
    if (!data && request.totalBytesRead() == 0)
        data = QByteArray();
    if (data)
        return !platform::writeFileAtomically(path, *data);
    if (downloaded.isEmpty())
        return false;
    if (downloaded == path)
        return true;
    QFile::remove(path);
    return QFile::copy(downloaded, path);
}

void HTTPDownloadCache::updateExpiryForRequest(const HTTPRequest& request,
                                               platform::Seconds maxAge) {
    const auto held = request.holdStill();
    const std::scoped_lock guard(accessLock_);
    const QString path = existingFile(request.url(), headersExtension);
    auto cached = cachedHeaders(request.url());
    const auto headers = request.responseHeaders();
    if (!cached || !headers)
        return;
    const auto expires = expiryDate(*headers, maxAge, clock_.wall());
    if (!expires)
        return;
    cached->expires = expires;
    static_cast<void>(platform::writeFileAtomically(path, encodedCachedHeaders(*cached)));
}

}  // namespace http
