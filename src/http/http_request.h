#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "http/content/content_type.h"
#include "http/http_request_delegate.h"
#include "http/http_request_error.h"
#include "http/operation_queue.h"
#include "http/request_blocks.h"
#include "http/request_properties.h"
#include "platform/base/error.h"
#include "platform/net/credential_storage.h"
#include "platform/net/http_message.h"

namespace http {

class HTTPBodyStore;
class RequestRun;
class RequestNotifier;
struct RequestState;

/// One logical transfer of one URL, with every redirect, authentication round and retry that it
/// takes. Made for one use.
///
/// Set it up, give it a delegate, call `startAsynchronous`. The work is done on one thread for the
/// whole process; delegates, blocks and progress are called on the main thread. What has been
/// received and not yet been handed to the delegate is bounded: past 4 MiB the transfer stands
/// still until the main thread has caught up.
///
/// Needs an HTTPSession. Any thread unless it says otherwise.
class HTTPRequest final : public Operation, public RequestProperties {
public:
    /// An empty URL makes a request that fails with code 5.
    [[nodiscard]] static std::shared_ptr<HTTPRequest> requestWithURL(const platform::Url& url);
    [[nodiscard]] static std::shared_ptr<HTTPRequest> requestWithURL(
        const platform::Url& url, std::shared_ptr<ResponseCache> usingCache,
        std::uint32_t andCachePolicy = 0);
    ~HTTPRequest() override;

    // Of the process.

    /// Where `startAsynchronous` lets requests wait for their turn: 4 at once at first.
    [[nodiscard]] static OperationQueue& sharedQueue();
    /// Time-out of new requests, in seconds; 10 at first.
    [[nodiscard]] static platform::Seconds defaultTimeOutSeconds();
    static void setDefaultTimeOutSeconds(platform::Seconds seconds);
    /// Empty: none is sent. Made of the program's name and version at first.
    [[nodiscard]] static QString defaultUserAgentString();
    static void setDefaultUserAgentString(const QString& text);
    /// The cache of new requests; null at first.
    [[nodiscard]] static std::shared_ptr<ResponseCache> defaultCache();
    static void setDefaultCache(std::shared_ptr<ResponseCache> cache);

    /// Bytes per second for all requests together, up and down; 0: no limit.
    static void setMaxBandwidthPerSecond(std::uint64_t bytes);
    [[nodiscard]] static std::uint64_t maxBandwidthPerSecond();
    [[nodiscard]] static bool isBandwidthThrottled();
    /// Counts bytes that were moved by other means.
    static void incrementBandwidthUsedInLastSecond(std::uint64_t bytes);
    /// Mean of the last five seconds at most.
    [[nodiscard]] static std::uint64_t averageBandwidthUsedPerSecond();
    /// Whether any transfer is allowed to receive at this moment.
    [[nodiscard]] static bool isNetworkInUse();

    /// Cookies received in this run.
    [[nodiscard]] static std::vector<platform::Cookie> sessionCookies();
    /// Also deletes the former ones from the shared jar.
    static void setSessionCookies(std::vector<platform::Cookie> cookies);
    static void addSessionCookie(const platform::Cookie& cookie);
    /// Credentials that are kept for good, of a server or a proxy.
    static void saveCredentials(const platform::HTTPCredentials& credentials,
                                const platform::ProtectionSpace& space);
    /// Calls `found` once, on any thread and perhaps at once.
    static void savedCredentials(const platform::ProtectionSpace& space,
                                 platform::CredentialStorage::Found found);
    static void removeCredentials(const platform::ProtectionSpace& space);
    /// Forgets the servers' credentials and the cookies of this run, and what the default cache
    /// keeps for it.
    static void clearSession();
    /// Closes the free connections whose time is over.
    static void expirePersistentConnections();

    // Helpers.

    /// Nothing: no such file. "application/octet-stream" for an unknown extension.
    [[nodiscard]] static std::optional<QString> mimeTypeForFileAtPath(const QString& path);
    [[nodiscard]] static QString base64forData(const QByteArray& data);
    [[nodiscard]] static ContentType parseMimeType(const QString& contentType);
    /// Until when the request's response may be used, in seconds since 1970; `maxAge` seconds from
    /// now if not 0, else as the server says. Nothing: it says nothing.
    [[nodiscard]] static std::optional<platform::Seconds> expiryDateForRequest(
        const HTTPRequest& request, platform::Seconds maxAge);
    /// A date of RFC 1123, with or without weekday and seconds. Nothing: it is none.
    [[nodiscard]] static std::optional<QDateTime> dateFromRFC1123String(const QString& text);
    /// Nothing: the file is gone, or was never there. Else code 8.
    static std::optional<platform::Error> removeFileAtPath(const QString& path);

    // Target.

    [[nodiscard]] platform::Url url() const;
    void setURL(const platform::Url& url);
    /// What was asked for before any redirect; empty before the start.
    [[nodiscard]] platform::Url originalURL() const;
    /// Where a redirect points that is not followed yet; empty: nowhere.
    [[nodiscard]] platform::Url redirectURL() const;
    [[nodiscard]] QString requestMethod() const;
    /// "POST" and "PUT", and any method once there is a body, give up connection reuse.
    void setRequestMethod(const QString& method);
    /// Replaces a header of that name.
    void addRequestHeader(const QString& header, const QString& value);
    /// Sends them ahead of any challenge. A name with a colon in it cannot be sent.
    void addBasicAuthenticationHeaderWithUsername(const QString& username, const QString& password);

    // Body. Before the start, on one thread.

    void setPostBody(const QByteArray& body);
    [[nodiscard]] QByteArray postBody() const;
    void appendPostData(const QByteArray& data);
    void appendPostDataFromFile(const QString& path);
    void setupPostBody();
    /// Fixes the body, and with it the method and `postLength`, ahead of the start.
    void buildPostBody();
    [[nodiscard]] std::uint64_t postLength() const;
    /// A probe for this request: the same address and settings, with HEAD. It tells nobody
    /// anything; what it learns of the length, and its failure, are this request's.
    [[nodiscard]] std::shared_ptr<HTTPRequest> HEADRequest();

    // Receivers. Null: none.

    void setDelegate(HTTPRequestDelegate* delegate);
    [[nodiscard]] HTTPRequestDelegate* delegate() const;
    /// Hears everything after the delegate, and progress.
    void setQueue(std::shared_ptr<HTTPRequestQueueDelegate> queue);
    [[nodiscard]] std::shared_ptr<HTTPRequestQueueDelegate> queue() const;
    void setUploadProgressDelegate(HTTPProgressDelegate* delegate);
    [[nodiscard]] HTTPProgressDelegate* uploadProgressDelegate() const;
    void setDownloadProgressDelegate(HTTPProgressDelegate* delegate);
    [[nodiscard]] HTTPProgressDelegate* downloadProgressDelegate() const;
    /// Closures called beside the delegate; those not set are skipped. They are destroyed on the
    /// main thread.
    void setBlocks(RequestBlocks blocks);
    /// What is called on the delegate in place of its own operations, where set.
    void setSelectors(DelegateSelectors selectors);

    /// Where what follows of the body in hand goes in place of the delegate, which hears how much
    /// it was; and ahead of it `first`, if that is not empty. From inside `requestDidReceiveData`
    /// for the first bytes of a body; forgotten with it. False: nothing follows, nor is `first`
    /// taken.
    bool setBodyStore(std::shared_ptr<HTTPBodyStore> store, const QByteArray& first = {});

    // Course.

    /// Waits in the shared queue, then runs on the request thread.
    void startAsynchronous();
    /// Runs on the calling thread, with a network loop of its own, until it is complete. Asks
    /// nobody for credentials.
    void startSynchronous();
    /// Fails with code 4, soon. Does nothing for a request that is complete.
    void cancel() override;
    /// The same, and nobody hears of this request any more.
    void clearDelegatesAndCancel();
    /// Goes on with a redirect that the delegate took over. An address that is neither http nor
    /// https fails with code 5.
    void redirectToURL(const platform::Url& url);
    /// Goes on with the credentials that have been set since the question.
    void retryUsingSuppliedCredentials();
    /// Fails with code 3.
    void cancelAuthentication();

    [[nodiscard]] bool isConcurrent() const { return true; }
    [[nodiscard]] bool isCancelled() const;
    [[nodiscard]] bool inProgress() const;
    [[nodiscard]] bool complete() const;
    /// Nothing: it has not failed.
    [[nodiscard]] std::optional<platform::Error> error() const;
    [[nodiscard]] int redirectCount() const;
    [[nodiscard]] int retryCount() const;

    // Response.

    /// Nothing before the head has come.
    [[nodiscard]] std::optional<platform::HTTPHeaders> responseHeaders() const;
    /// 0 before the head has come.
    [[nodiscard]] int responseStatusCode() const;
    /// The whole status line.
    [[nodiscard]] QString responseStatusMessage() const;
    [[nodiscard]] std::vector<platform::Cookie> responseCookies() const;
    [[nodiscard]] StringEncoding responseEncoding() const;
    [[nodiscard]] bool isResponseCompressed() const;
    /// As received; empty where a delegate or a file took the bytes.
    [[nodiscard]] QByteArray rawResponseData() const;
    /// Decompressed. Nothing: it is compressed and damaged, or there is no body.
    [[nodiscard]] std::optional<QByteArray> responseData() const;
    /// Decoded by `responseEncoding`. Nothing: no data, or not in that encoding.
    [[nodiscard]] std::optional<QString> responseString() const;
    /// Announced, without the part that was there before; 0: unknown so far.
    [[nodiscard]] std::uint64_t contentLength() const;
    [[nodiscard]] std::uint64_t partialDownloadSize() const;
    [[nodiscard]] std::uint64_t totalBytesRead() const;
    [[nodiscard]] std::uint64_t totalBytesSent() const;
    [[nodiscard]] bool didUseCachedResponse() const;
    /// Number of the connection in use or last used; 0: none that is kept.
    [[nodiscard]] std::uint32_t connectionID() const;
    /// 0 none, 1 the server's, 2 the proxy's credentials are wanted.
    [[nodiscard]] int authenticationNeeded() const;
    /// Of the challenge that was met last; empty: none.
    [[nodiscard]] QString authenticationScheme() const;
    [[nodiscard]] QString authenticationRealm() const;
    [[nodiscard]] QString proxyAuthenticationScheme() const;
    [[nodiscard]] QString proxyAuthenticationRealm() const;
    /// Where the credentials that are wanted go: to the proxy if it asks, else to the server.
    [[nodiscard]] platform::ProtectionSpace protectionSpace() const;

    void start() override;

    /// For the other classes of this folder.
    [[nodiscard]] RequestRun& internals() { return *run_; }

private:
    explicit HTTPRequest(const platform::Url& url);

    template <typename Value>
    [[nodiscard]] Value state(Value RequestState::*field) const {
        const std::scoped_lock guard(cancelledLock_);
        return (*state_).*field;
    }

    std::unique_ptr<RequestState> state_;
    std::unique_ptr<RequestNotifier> notifier_;
    std::unique_ptr<RequestRun> run_;
};

}  // namespace http
