#pragma once

#include <mutex>
#include <utility>

#include "http/request_options.h"

namespace http {

/// The options of a request as properties: what each means stands in RequestOptions. Any thread; a
/// change made while the request runs counts from the next send.
class RequestProperties {
public:
    // For the caller's own use.
    [[nodiscard]] QVariantMap userInfo() const { return get(&RequestOptions::userInfo); }
    void setUserInfo(QVariantMap value) { set(&RequestOptions::userInfo, std::move(value)); }
    [[nodiscard]] std::int64_t tag() const { return get(&RequestOptions::tag); }
    void setTag(std::int64_t value) { set(&RequestOptions::tag, value); }

    // Headers and cookies.
    [[nodiscard]] platform::HTTPHeaders requestHeaders() const {
        return get(&RequestOptions::requestHeaders);
    }
    void setRequestHeaders(platform::HTTPHeaders value) {
        set(&RequestOptions::requestHeaders, std::move(value));
    }
    [[nodiscard]] std::vector<platform::Cookie> requestCookies() const {
        return get(&RequestOptions::requestCookies);
    }
    void setRequestCookies(std::vector<platform::Cookie> value) {
        set(&RequestOptions::requestCookies, std::move(value));
    }
    [[nodiscard]] bool useCookiePersistence() const {
        return get(&RequestOptions::useCookiePersistence);
    }
    void setUseCookiePersistence(bool value) { set(&RequestOptions::useCookiePersistence, value); }
    [[nodiscard]] QString userAgentString() const { return get(&RequestOptions::userAgentString); }
    void setUserAgentString(QString value) {
        set(&RequestOptions::userAgentString, std::move(value));
    }
    [[nodiscard]] bool allowCompressedResponse() const {
        return get(&RequestOptions::allowCompressedResponse);
    }
    void setAllowCompressedResponse(bool value) {
        set(&RequestOptions::allowCompressedResponse, value);
    }
    [[nodiscard]] bool useHTTPVersionOne() const { return get(&RequestOptions::useHTTPVersionOne); }
    void setUseHTTPVersionOne(bool value) { set(&RequestOptions::useHTTPVersionOne, value); }

    // Body.
    [[nodiscard]] bool shouldStreamPostDataFromDisk() const {
        return get(&RequestOptions::shouldStreamPostDataFromDisk);
    }
    void setShouldStreamPostDataFromDisk(bool value) {
        set(&RequestOptions::shouldStreamPostDataFromDisk, value);
    }
    [[nodiscard]] QString postBodyFilePath() const {
        return get(&RequestOptions::postBodyFilePath);
    }
    void setPostBodyFilePath(QString value) {
        set(&RequestOptions::postBodyFilePath, std::move(value));
    }
    [[nodiscard]] bool shouldCompressRequestBody() const {
        return get(&RequestOptions::shouldCompressRequestBody);
    }
    void setShouldCompressRequestBody(bool value) {
        set(&RequestOptions::shouldCompressRequestBody, value);
    }

    // Response.
    [[nodiscard]] StringEncoding defaultResponseEncoding() const {
        return get(&RequestOptions::defaultResponseEncoding);
    }
    void setDefaultResponseEncoding(StringEncoding value) {
        set(&RequestOptions::defaultResponseEncoding, value);
    }
    [[nodiscard]] QString downloadDestinationPath() const {
        return get(&RequestOptions::downloadDestinationPath);
    }
    void setDownloadDestinationPath(QString value) {
        set(&RequestOptions::downloadDestinationPath, std::move(value));
    }
    [[nodiscard]] QString temporaryFileDownloadPath() const {
        return get(&RequestOptions::temporaryFileDownloadPath);
    }
    void setTemporaryFileDownloadPath(QString value) {
        set(&RequestOptions::temporaryFileDownloadPath, std::move(value));
    }
    [[nodiscard]] QString temporaryUncompressedDataDownloadPath() const {
        return get(&RequestOptions::temporaryUncompressedDataDownloadPath);
    }
    void setTemporaryUncompressedDataDownloadPath(QString value) {
        set(&RequestOptions::temporaryUncompressedDataDownloadPath, std::move(value));
    }
    [[nodiscard]] bool allowResumeForFileDownloads() const {
        return get(&RequestOptions::allowResumeForFileDownloads);
    }
    void setAllowResumeForFileDownloads(bool value) {
        set(&RequestOptions::allowResumeForFileDownloads, value);
    }
    [[nodiscard]] bool shouldWaitToInflateCompressedResponses() const {
        return get(&RequestOptions::shouldWaitToInflateCompressedResponses);
    }
    void setShouldWaitToInflateCompressedResponses(bool value) {
        set(&RequestOptions::shouldWaitToInflateCompressedResponses, value);
    }

    // Course.
    [[nodiscard]] platform::Seconds timeOutSeconds() const {
        return get(&RequestOptions::timeOutSeconds);
    }
    void setTimeOutSeconds(platform::Seconds value) { set(&RequestOptions::timeOutSeconds, value); }
    /// Also in the middle of a transfer. Several requests can share one.
    void setOwnBandwidth(std::shared_ptr<BandwidthAccount> account) {
        set(&RequestOptions::ownBandwidth, std::move(account));
    }
    [[nodiscard]] int numberOfTimesToRetryOnTimeout() const {
        return get(&RequestOptions::numberOfTimesToRetryOnTimeout);
    }
    void setNumberOfTimesToRetryOnTimeout(int value) {
        set(&RequestOptions::numberOfTimesToRetryOnTimeout, value);
    }
    [[nodiscard]] bool shouldRedirect() const { return get(&RequestOptions::shouldRedirect); }
    void setShouldRedirect(bool value) { set(&RequestOptions::shouldRedirect, value); }
    [[nodiscard]] bool shouldUseRFC2616RedirectBehaviour() const {
        return get(&RequestOptions::shouldUseRFC2616RedirectBehaviour);
    }
    void setShouldUseRFC2616RedirectBehaviour(bool value) {
        set(&RequestOptions::shouldUseRFC2616RedirectBehaviour, value);
    }
    [[nodiscard]] bool isDebugLogged() const { return get(&RequestOptions::isDebugLogged); }
    void setDebugLogged(bool value) { set(&RequestOptions::isDebugLogged, value); }
    [[nodiscard]] bool followsPermanentRedirect() const {
        return get(&RequestOptions::followsPermanentRedirect);
    }
    void setFollowsPermanentRedirect(bool value) {
        set(&RequestOptions::followsPermanentRedirect, value);
    }

    // TLS.
    [[nodiscard]] bool validatesSecureCertificate() const {
        return get(&RequestOptions::validatesSecureCertificate);
    }
    void setValidatesSecureCertificate(bool value) {
        set(&RequestOptions::validatesSecureCertificate, value);
    }
    [[nodiscard]] ClientIdentity clientCertificateIdentity() const {
        return get(&RequestOptions::clientCertificateIdentity);
    }
    void setClientCertificateIdentity(ClientIdentity value) {
        set(&RequestOptions::clientCertificateIdentity, std::move(value));
    }
    [[nodiscard]] QString authoritiesPath() const { return get(&RequestOptions::authoritiesPath); }
    void setAuthoritiesPath(QString value) {
        set(&RequestOptions::authoritiesPath, std::move(value));
    }

    // Progress.
    [[nodiscard]] bool showAccurateProgress() const {
        return get(&RequestOptions::showAccurateProgress);
    }
    void setShowAccurateProgress(bool value) { set(&RequestOptions::showAccurateProgress, value); }
    [[nodiscard]] bool shouldResetDownloadProgress() const {
        return get(&RequestOptions::shouldResetDownloadProgress);
    }
    void setShouldResetDownloadProgress(bool value) {
        set(&RequestOptions::shouldResetDownloadProgress, value);
    }
    [[nodiscard]] bool shouldResetUploadProgress() const {
        return get(&RequestOptions::shouldResetUploadProgress);
    }
    void setShouldResetUploadProgress(bool value) {
        set(&RequestOptions::shouldResetUploadProgress, value);
    }

    // Connections.
    [[nodiscard]] bool shouldAttemptPersistentConnection() const {
        return get(&RequestOptions::shouldAttemptPersistentConnection);
    }
    void setShouldAttemptPersistentConnection(bool value) {
        set(&RequestOptions::shouldAttemptPersistentConnection, value);
    }
    [[nodiscard]] platform::Seconds persistentConnectionTimeoutSeconds() const {
        return get(&RequestOptions::persistentConnectionTimeoutSeconds);
    }
    void setPersistentConnectionTimeoutSeconds(platform::Seconds value) {
        set(&RequestOptions::persistentConnectionTimeoutSeconds, value);
    }

    // Authentication.
    [[nodiscard]] QString username() const { return get(&RequestOptions::username); }
    void setUsername(QString value) { set(&RequestOptions::username, std::move(value)); }
    [[nodiscard]] QString password() const { return get(&RequestOptions::password); }
    void setPassword(QString value) { set(&RequestOptions::password, std::move(value)); }
    [[nodiscard]] QString domain() const { return get(&RequestOptions::domain); }
    void setDomain(QString value) { set(&RequestOptions::domain, std::move(value)); }
    [[nodiscard]] QString proxyUsername() const { return get(&RequestOptions::proxyUsername); }
    void setProxyUsername(QString value) { set(&RequestOptions::proxyUsername, std::move(value)); }
    [[nodiscard]] QString proxyPassword() const { return get(&RequestOptions::proxyPassword); }
    void setProxyPassword(QString value) { set(&RequestOptions::proxyPassword, std::move(value)); }
    [[nodiscard]] QString proxyDomain() const { return get(&RequestOptions::proxyDomain); }
    void setProxyDomain(QString value) { set(&RequestOptions::proxyDomain, std::move(value)); }
    [[nodiscard]] bool shouldPresentCredentialsBeforeChallenge() const {
        return get(&RequestOptions::shouldPresentCredentialsBeforeChallenge);
    }
    void setShouldPresentCredentialsBeforeChallenge(bool value) {
        set(&RequestOptions::shouldPresentCredentialsBeforeChallenge, value);
    }
    [[nodiscard]] bool useSessionPersistence() const {
        return get(&RequestOptions::useSessionPersistence);
    }
    void setUseSessionPersistence(bool value) {
        set(&RequestOptions::useSessionPersistence, value);
    }
    [[nodiscard]] bool useKeychainPersistence() const {
        return get(&RequestOptions::useKeychainPersistence);
    }
    void setUseKeychainPersistence(bool value) {
        set(&RequestOptions::useKeychainPersistence, value);
    }
    [[nodiscard]] bool shouldPresentAuthenticationDialog() const {
        return get(&RequestOptions::shouldPresentAuthenticationDialog);
    }
    void setShouldPresentAuthenticationDialog(bool value) {
        set(&RequestOptions::shouldPresentAuthenticationDialog, value);
    }
    [[nodiscard]] bool shouldPresentProxyAuthenticationDialog() const {
        return get(&RequestOptions::shouldPresentProxyAuthenticationDialog);
    }
    void setShouldPresentProxyAuthenticationDialog(bool value) {
        set(&RequestOptions::shouldPresentProxyAuthenticationDialog, value);
    }

    // Proxy.
    [[nodiscard]] QString proxyHost() const { return get(&RequestOptions::proxyHost); }
    void setProxyHost(QString value) { set(&RequestOptions::proxyHost, std::move(value)); }
    [[nodiscard]] int proxyPort() const { return get(&RequestOptions::proxyPort); }
    void setProxyPort(int value) { set(&RequestOptions::proxyPort, value); }
    [[nodiscard]] QString proxyType() const { return get(&RequestOptions::proxyType); }
    void setProxyType(QString value) { set(&RequestOptions::proxyType, std::move(value)); }
    [[nodiscard]] platform::Url PACurl() const { return get(&RequestOptions::PACurl); }
    void setPACurl(platform::Url value) { set(&RequestOptions::PACurl, std::move(value)); }

    // Cache.
    [[nodiscard]] std::shared_ptr<ResponseCache> downloadCache() const {
        return get(&RequestOptions::downloadCache);
    }
    void setDownloadCache(std::shared_ptr<ResponseCache> value) {
        set(&RequestOptions::downloadCache, std::move(value));
    }
    [[nodiscard]] std::uint32_t cachePolicy() const { return get(&RequestOptions::cachePolicy); }
    void setCachePolicy(std::uint32_t value) { set(&RequestOptions::cachePolicy, value); }
    [[nodiscard]] std::uint32_t cacheStoragePolicy() const {
        return get(&RequestOptions::cacheStoragePolicy);
    }
    void setCacheStoragePolicy(std::uint32_t value) {
        set(&RequestOptions::cacheStoragePolicy, value);
    }
    [[nodiscard]] platform::Seconds secondsToCache() const {
        return get(&RequestOptions::secondsToCache);
    }
    void setSecondsToCache(platform::Seconds value) { set(&RequestOptions::secondsToCache, value); }

    /// Nothing of the request changes while this is held, by whoever reads several of its values or
    /// holds a lock of his own meanwhile. Taken before any other lock. Any thread.
    [[nodiscard]] std::unique_lock<std::recursive_mutex> holdStill() const {
        return std::unique_lock(cancelledLock_);
    }

protected:
    RequestProperties() = default;
    ~RequestProperties() = default;

    template <typename Value>
    [[nodiscard]] Value get(Value RequestOptions::*field) const {
        const std::scoped_lock guard(cancelledLock_);
        return options_.*field;
    }
    template <typename Value>
    void set(Value RequestOptions::*field, Value value) {
        const std::scoped_lock guard(cancelledLock_);
        options_.*field = std::move(value);
    }

    /// Guards all state of one request; taken before any lock of the process.
    mutable std::recursive_mutex cancelledLock_;
    RequestOptions options_;
};

}  // namespace http
