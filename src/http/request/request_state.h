#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "http/request_options.h"
#include "platform/base/error.h"
#include "platform/net/http_message.h"

namespace http {

class HTTPRequest;

/// Whose credentials a response asks for.
enum class AuthenticationNeeded { None = 0, Server = 1, Proxy = 2 };

/// What one request knows of itself, shared by the parts that make it up; its outside sees it
/// through HTTPRequest. All of it is guarded by `cancelledLock`.
struct RequestState {
    RequestState(std::recursive_mutex& lock, RequestOptions& requestOptions)
        : cancelledLock(lock), options(requestOptions) {}

    std::recursive_mutex& cancelledLock;
    RequestOptions& options;

    // Target.
    platform::Url url;
    platform::Url originalURL;
    platform::Url redirectURL;
    QString requestMethod = QStringLiteral("GET");
    /// The message of the last send, as it went out.
    std::optional<platform::HTTPRequestMessage> request;

    // Response.
    std::optional<platform::HTTPHeaders> responseHeaders;
    int responseStatusCode = 0;
    QString responseStatusMessage;
    std::vector<platform::Cookie> responseCookies;
    StringEncoding responseEncoding = noStringEncoding;
    QByteArray rawResponseData;

    // Counters, in bytes.
    std::uint64_t postLength = 0;
    std::uint64_t contentLength = 0;  ///< Of this response, without what was there before.
    std::uint64_t partialDownloadSize = 0;
    std::uint64_t totalBytesRead = 0;  ///< Of this send, as they came, compressed or not.
    std::uint64_t totalBytesSent = 0;
    std::uint64_t lastBytesRead = 0;  ///< What progress has been told of.
    std::uint64_t lastBytesSent = 0;
    /// The first part of a body, which the transport swallows at once; 0: not known yet.
    std::uint64_t uploadBufferSize = 0;

    // Course.
    bool inProgress = false;
    bool complete = false;          ///< A redirect or another send clears it again.
    bool downloadComplete = false;  ///< The response has come to its end.
    bool finished = false;
    bool cancelled = false;
    bool isSynchronous = false;
    /// It fetches an automatic configuration script for another, and needs no proxy itself.
    bool isPACFileRequest = false;
    bool needsRedirect = false;
    bool willRetryRequest = false;
    bool updatedProgress = false;
    bool didUseCachedResponse = false;
    AuthenticationNeeded authenticationNeeded = AuthenticationNeeded::None;
    int redirectCount = 0;
    int retryCount = 0;
    std::optional<platform::Error> error;
    /// Monotonic; nothing: time-outs are off.
    std::optional<platform::Seconds> lastActivityTime;

    /// The request that this one probes for with HEAD; null: this is no probe.
    std::shared_ptr<HTTPRequest> mainRequest;

    [[nodiscard]] bool isResponseCompressed() const;
    [[nodiscard]] std::optional<QString> responseHeader(const QString& name) const;
};

}  // namespace http
