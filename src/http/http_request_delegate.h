#pragma once

#include <QByteArray>
#include <cstdint>

#include "http/http_response.h"

namespace http {

class HTTPRequest;

/// Who hears of a request's course. All operations are called on the main thread, through
/// `platform::mainRunLoop()`, in the order in which things happened, and all are optional:
/// override what is wanted.
///
/// Five of them change what a request does, so a request must know whether they exist before it
/// calls them: `capabilities` says so.
///
/// A request does not own its delegate. A delegate that dies first must call
/// `clearDelegatesAndCancel` (or `setDelegate(nullptr)`) on the main thread; nothing reaches it
/// after that returns, not even what was already on its way.
class HTTPRequestDelegate {
public:
    struct Capabilities {
        /// Takes redirects over: after `requestWillRedirectToURL` the request stands still until
        /// somebody calls its `redirectToURL`.
        bool confirmsRedirects = false;
        /// Takes every byte of every body; the request then stores nothing, in memory or on disk.
        bool receivesData = false;
        /// After `authenticationNeededForRequest` the request stands still until somebody calls
        /// its `retryUsingSuppliedCredentials` or `cancelAuthentication`.
        bool suppliesCredentials = false;
        /// The same for `proxyAuthenticationNeededForRequest`.
        bool suppliesProxyCredentials = false;
        /// May call `setBodyStore` when it is given the first bytes of a body; more of a longer one
        /// comes only when it has had the chance.
        bool suppliesBodyStore = false;
    };

    virtual ~HTTPRequestDelegate() = default;

    /// Asked on any thread and often; must not lock anything that is held while a request is
    /// called.
    [[nodiscard]] virtual Capabilities capabilities() const { return {}; }

    /// Sent anew for each send: after an authentication round, a retry and a redirect as well.
    virtual void requestStarted(HTTPRequest& /*request*/) {}
    /// What belongs to this answer is in `response`; the request may be further on.
    virtual void requestDidReceiveResponseHeaders(HTTPRequest& /*request*/,
                                                  const HTTPResponse& /*response*/) {}
    /// The response is a redirect; comes before its body is read and before any confirmation.
    virtual void requestRedirected(HTTPRequest& /*request*/) {}
    virtual void requestWillRedirectToURL(HTTPRequest& /*request*/, const platform::Url& /*url*/) {}
    /// Never empty. Keeping `data` costs no copy.
    virtual void requestDidReceiveData(HTTPRequest& /*request*/, const QByteArray& /*data*/) {}
    /// The request's store has taken so many bytes since this was told last.
    virtual void requestDidStoreData(HTTPRequest& /*request*/, std::int64_t /*count*/) {}
    /// Also for an HTTP error status: look at `responseStatusCode`.
    virtual void requestFinished(HTTPRequest& /*request*/) {}
    /// The request's `error` says why.
    virtual void requestFailed(HTTPRequest& /*request*/) {}
    virtual void authenticationNeededForRequest(HTTPRequest& /*request*/) {}
    virtual void proxyAuthenticationNeededForRequest(HTTPRequest& /*request*/) {}
};

/// Who hears of amounts and of a fraction done, on the main thread. Not owned, as above.
class HTTPProgressDelegate {
public:
    virtual ~HTTPProgressDelegate() = default;

    /// Negative amounts take back what was told before.
    virtual void requestDidReceiveBytes(HTTPRequest& /*request*/, std::int64_t /*amount*/) {}
    virtual void requestDidSendBytes(HTTPRequest& /*request*/, std::int64_t /*amount*/) {}
    virtual void requestIncrementDownloadSizeBy(HTTPRequest& /*request*/, std::int64_t /*amount*/) {
    }
    virtual void requestIncrementUploadSizeBy(HTTPRequest& /*request*/, std::int64_t /*amount*/) {}
    /// An indicator's range is 0 to `value`, which is always 1.
    virtual void setMaxValue(double /*value*/) {}
    /// Not a number for a fraction of nothing.
    virtual void setDoubleValue(double /*value*/) {}
};

/// What a request's queue hears: everything.
class HTTPRequestQueueDelegate : public HTTPRequestDelegate, public HTTPProgressDelegate {};

}  // namespace http
