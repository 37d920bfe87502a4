#pragma once

#include <QString>
#include <QVariantMap>
#include <cstdint>
#include <memory>
#include <vector>

#include "http/content/string_encoding.h"
#include "platform/base/clock.h"
#include "platform/net/cookie_storage.h"
#include "platform/net/http_message.h"

namespace http {

class BandwidthAccount;
class ResponseCache;

/// Who this side is to a TLS server: PEM files. The certificate may be followed by its chain.
struct ClientIdentity {
    QString certificatePath;
    QString keyPath;

    [[nodiscard]] bool exists() const { return !certificatePath.isEmpty(); }
};

/// The kinds of proxy that a request can be given by name.
inline const QString proxyTypeHTTP = QStringLiteral("kCFProxyTypeHTTP");
inline const QString proxyTypeHTTPS = QStringLiteral("kCFProxyTypeHTTPS");
inline const QString proxyTypeSOCKS = QStringLiteral("kCFProxyTypeSOCKS");
inline const QString proxyTypeNone = QStringLiteral("kCFProxyTypeNone");
/// What those cannot say: SOCKS of version 4, and HTTP spoken to the proxy over TLS.
inline const QString proxyTypeSOCKS4 = QStringLiteral("SOCKS4");
inline const QString proxyTypeTLS = QStringLiteral("TLS");

/// What a caller asks of a request, with the values that a new request has.
struct RequestOptions {
    // For the caller's own use.
    QVariantMap userInfo;
    std::int64_t tag = 0;
    bool isDebugLogged = false;  ///< Writes its debug lines whether "DQDebugLog" is on or not.

    // Headers and cookies.
    platform::HTTPHeaders requestHeaders;
    std::vector<platform::Cookie> requestCookies;  ///< Beside those of the shared jar.
    bool useCookiePersistence = true;              ///< Send from and keep in the shared jar.
    QString userAgentString;                       ///< Empty: the default user agent.
    bool allowCompressedResponse = true;
    bool useHTTPVersionOne = false;  ///< HTTP/1.0 in place of 1.1.

    // Body.
    bool shouldStreamPostDataFromDisk = false;
    QString postBodyFilePath;
    bool shouldCompressRequestBody = false;

    // Response.
    StringEncoding defaultResponseEncoding = latin1StringEncoding;
    QString downloadDestinationPath;    ///< Empty: into memory.
    QString temporaryFileDownloadPath;  ///< Empty: one is made up.
    QString temporaryUncompressedDataDownloadPath;
    bool allowResumeForFileDownloads = false;  ///< Goes on with the temporary file.
    /// Inflate a compressed response once it is whole, not block by block.
    bool shouldWaitToInflateCompressedResponses = true;

    // Course.
    platform::Seconds timeOutSeconds = 10;  ///< 0: never.
    /// Counts what comes, beside the account of all requests, and lets this one rest with it. Null:
    /// none.
    std::shared_ptr<BandwidthAccount> ownBandwidth;
    int numberOfTimesToRetryOnTimeout = 0;
    bool shouldRedirect = true;
    /// Keep method and body on 301 and 302 (RFC 9110, 15.4), not only on 307.
    bool shouldUseRFC2616RedirectBehaviour = false;
    bool followsPermanentRedirect = false;  ///< Follow 308 (RFC 9110, 15.4.9) as well.

    // TLS.
    /// A client identity turns validation on whatever this says.
    bool validatesSecureCertificate = true;
    ClientIdentity clientCertificateIdentity;
    QString authoritiesPath;  ///< A PEM bundle in place of the system's authorities; empty: those.

    // Progress.
    bool showAccurateProgress = true;  ///< Bytes; else 1 for the whole.
    bool shouldResetDownloadProgress = true;
    bool shouldResetUploadProgress = true;

    // Connections.
    bool shouldAttemptPersistentConnection = true;
    platform::Seconds persistentConnectionTimeoutSeconds = 60;

    // Authentication.
    QString username, password, domain;
    QString proxyUsername, proxyPassword, proxyDomain;
    bool shouldPresentCredentialsBeforeChallenge = true;
    bool useSessionPersistence = true;    ///< Remember credentials for this run.
    bool useKeychainPersistence = false;  ///< Remember them for good.
    bool shouldPresentAuthenticationDialog = false;
    bool shouldPresentProxyAuthenticationDialog = true;

    // Proxy. Host and port both set: this one; neither: the system's for the URL.
    QString proxyHost;
    int proxyPort = 0;
    QString proxyType;     ///< Empty: HTTP.
    platform::Url PACurl;  ///< Of an automatic configuration script; empty: the system's.

    // Cache.
    std::shared_ptr<ResponseCache> downloadCache;
    std::uint32_t cachePolicy = 0;         ///< Bits; 0: the cache's default.
    std::uint32_t cacheStoragePolicy = 0;  ///< 0: for this run; else for good.
    platform::Seconds secondsToCache = 0;  ///< 0: as the server says.
};

}  // namespace http
