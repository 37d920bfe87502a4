#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "http/request/request_phase.h"
#include "http/request_options.h"
#include "platform/base/error.h"
#include "platform/net/http_message.h"

namespace http {

class HTTPRequest;

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
    RequestRole role = RequestRole::Ordinary;
    RequestPhase phase = RequestPhase::New;
    Sequel sequel = Sequel::Nothing;
    int redirectCount = 0;
    int retryCount = 0;
    std::optional<platform::Error> error;
    /// Monotonic; nothing: time-outs are off.
    std::optional<platform::Seconds> lastActivityTime;

    /// The request that this one probes for with HEAD; null: this is no probe.
    std::shared_ptr<HTTPRequest> mainRequest;

    [[nodiscard]] bool isInProgress() const {
        return phase != RequestPhase::New && phase < RequestPhase::Ended;
    }
    /// Nothing comes any more, unless another send begins.
    [[nodiscard]] bool isComplete() const { return phase >= RequestPhase::Answered || error; }
    [[nodiscard]] bool isCancelled() const { return phase == RequestPhase::Cancelled; }
    [[nodiscard]] bool isRedirected() const {
        return sequel == Sequel::Redirect || sequel == Sequel::RedirectInQuestion;
    }
    [[nodiscard]] bool needsCredentials() const {
        return sequel == Sequel::ServerCredentials || sequel == Sequel::ProxyCredentials;
    }
    /// Stands still until the delegate, the user or another request says how to go on.
    [[nodiscard]] bool isWaiting() const {
        return phase == RequestPhase::Answered && sequel != Sequel::Nothing;
    }
    [[nodiscard]] bool isResponseCompressed() const;
    [[nodiscard]] std::optional<QString> responseHeader(const QString& name) const;
};

}  // namespace http
