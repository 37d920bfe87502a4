#include "http/content/http_date.h"
#include "http/extras/cache/cached_headers.h"
#include "http/extras/cache/response_cache.h"
#include "http/http_request.h"
#include "http/request/temporary_path.h"
#include "http/shared/shared_state.h"
#include "platform/files/files.h"
#include "platform/files/type_identifiers.h"

#include <QFileInfo>

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::HTTPCredentials;
using platform::ProtectionSpace;

OperationQueue& HTTPRequest::sharedQueue() {
    return SharedState::current()->sharedQueue;
}

platform::Seconds HTTPRequest::defaultTimeOutSeconds() {
    return SharedState::current()->defaults.timeOutSeconds();
}

void HTTPRequest::setDefaultTimeOutSeconds(platform::Seconds seconds) {
    SharedState::current()->defaults.setTimeOutSeconds(seconds);
}

QString HTTPRequest::defaultUserAgentString() {
    return SharedState::current()->defaults.userAgentString();
}

void HTTPRequest::setDefaultUserAgentString(const QString& text) {
    SharedState::current()->defaults.setUserAgentString(text);
}

std::shared_ptr<ResponseCache> HTTPRequest::defaultCache() {
    return SharedState::current()->defaults.cache();
}

void HTTPRequest::setDefaultCache(std::shared_ptr<ResponseCache> cache) {
    SharedState::current()->defaults.setCache(std::move(cache));
}

void HTTPRequest::setMaxBandwidthPerSecond(std::uint64_t bytes) {
    SharedState::current()->bandwidth.setMaxBandwidthPerSecond(bytes);
}

std::uint64_t HTTPRequest::maxBandwidthPerSecond() {
    return SharedState::current()->bandwidth.maxBandwidthPerSecond();
}

bool HTTPRequest::isBandwidthThrottled() {
    return SharedState::current()->bandwidth.isBandwidthThrottled();
}

void HTTPRequest::incrementBandwidthUsedInLastSecond(std::uint64_t bytes) {
    SharedState::current()->bandwidth.incrementBandwidthUsedInLastSecond(bytes);
}

std::uint64_t HTTPRequest::averageBandwidthUsedPerSecond() {
    return SharedState::current()->bandwidth.averageBandwidthUsedPerSecond();
}

bool HTTPRequest::isNetworkInUse() {
    return SharedState::current()->connections.hasScheduledStreams();
}

std::vector<platform::Cookie> HTTPRequest::sessionCookies() {
    return SharedState::current()->cookies.cookies();
}

void HTTPRequest::setSessionCookies(std::vector<platform::Cookie> cookies) {
    SharedState::current()->cookies.setCookies(std::move(cookies));
}

void HTTPRequest::addSessionCookie(const platform::Cookie& cookie) {
    SharedState::current()->cookies.addCookie(cookie);
}

void HTTPRequest::clearSession() {
    const auto shared = SharedState::current();
    shared->sessionCredentials.clear();
    shared->cookies.setCookies({});
    if (const auto cache = shared->defaults.cache())
        static_cast<void>(cache->clearCachedResponsesForStoragePolicy(cacheStorageForSession));
}

void HTTPRequest::expirePersistentConnections() {
    SharedState::current()->connections.expirePersistentConnections();
}

void HTTPRequest::saveCredentials(const HTTPCredentials& credentials,
                                  const ProtectionSpace& space) {
    platform::sharedCredentialStorage().save(space, credentials);
}

void HTTPRequest::savedCredentials(const ProtectionSpace& space,
                                   platform::CredentialStorage::Found found) {
    platform::sharedCredentialStorage().find(space, std::move(found));
}

void HTTPRequest::removeCredentials(const ProtectionSpace& space) {
    platform::sharedCredentialStorage().remove(space);
}

std::optional<QString> HTTPRequest::mimeTypeForFileAtPath(const QString& path) {
    if (!QFileInfo::exists(path))
        return std::nullopt;
    const QString type = platform::mimeTypeForExtension(QFileInfo(path).suffix());
    return type.isEmpty() ? u"application/octet-stream"_s : type;
}

QString HTTPRequest::base64forData(const QByteArray& data) {
    return QString::fromLatin1(data.toBase64());
}

ContentType HTTPRequest::parseMimeType(const QString& contentType) {
    return parseContentType(contentType);
}

std::optional<platform::Seconds> HTTPRequest::expiryDateForRequest(const HTTPRequest& request,
                                                                   platform::Seconds maxAge) {
    const auto headers = request.responseHeaders().value_or(platform::HTTPHeaders());
    return expiryDate(headers, maxAge, SharedState::current()->clock.wall());
}

std::optional<QDateTime> HTTPRequest::dateFromRFC1123String(const QString& text) {
    return http::dateFromRFC1123String(text);
}

std::optional<platform::Error> HTTPRequest::removeFileAtPath(const QString& path) {
    if (removeFileIfPresent(path))
        return std::nullopt;
    return fileDeletionError(path);
}

}  // namespace http
