#pragma once

#include <QByteArray>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

#include "http/http_request_delegate.h"
#include "http/request_blocks.h"

namespace http {

class Mailbox;

/// Who hears of one request, and the way to them: every event goes to the main thread and there to
/// the delegate, then the block, then the queue, each looked up when its turn comes, so that one
/// which has been cleared meanwhile hears nothing. An event that nobody could hear is not sent.
class RequestNotifier {
public:
    /// `cancelledLock`: the request's; guards the receivers.
    RequestNotifier(HTTPRequest& request, std::recursive_mutex& cancelledLock);
    ~RequestNotifier();
    RequestNotifier(const RequestNotifier&) = delete;
    RequestNotifier& operator=(const RequestNotifier&) = delete;

    // Receivers. Any thread.

    void setDelegate(HTTPRequestDelegate* delegate);
    [[nodiscard]] HTTPRequestDelegate* delegate() const;
    void setQueue(std::shared_ptr<HTTPRequestQueueDelegate> queue);
    [[nodiscard]] std::shared_ptr<HTTPRequestQueueDelegate> queue() const;
    void setUploadProgressDelegate(HTTPProgressDelegate* delegate);
    [[nodiscard]] HTTPProgressDelegate* uploadProgressDelegate() const;
    void setDownloadProgressDelegate(HTTPProgressDelegate* delegate);
    [[nodiscard]] HTTPProgressDelegate* downloadProgressDelegate() const;
    void setBlocks(RequestBlocks blocks);
    void setSelectors(DelegateSelectors selectors);
    /// All of them, for good.
    void clearReceivers();
    /// Events are told on the thread where they happen from now on.
    void setReportsDirectly() { reportsDirectly_ = true; }

    // Events. The request's loop.

    void requestStarted();
    void requestReceivedResponseHeaders(const HTTPResponse& response);
    void requestRedirected();
    [[nodiscard]] bool isRedirectConfirmed() const;
    void requestWillRedirectToURL(const platform::Url& url);
    [[nodiscard]] bool isDataReceived() const;
    /// False: the main thread is behind, and `caughtUp` will be called there when it no longer is.
    [[nodiscard]] bool passOnReceivedData(QByteArray data, const std::function<void()>& caughtUp);
    [[nodiscard]] bool isBodyStoreSupplied() const;
    /// However often it happens while the main thread is busy, it is told once.
    void dataWasStored(std::int64_t count);
    /// Calls, on the main thread, when all that has happened so far has been told.
    void callWhenTold(std::function<void()> call);
    void reportFinished();
    void reportFailure();
    /// False: nobody supplies credentials, and nobody has been asked.
    [[nodiscard]] bool askForCredentials();
    [[nodiscard]] bool askForProxyCredentials();

    // Progress. `fraction` is for the indicator.

    void downloadProgressed(std::int64_t amount, double fraction, std::uint64_t total);
    void uploadProgressed(std::int64_t amount, double fraction, std::uint64_t total);
    void setDownloadIndicator(double fraction);
    void setUploadIndicator(double fraction);
    void incrementDownloadSizeBy(std::int64_t amount);
    void incrementUploadSizeBy(std::int64_t amount);

private:
    using Blocks = std::shared_ptr<const RequestBlocks>;
    using Selectors = std::shared_ptr<const DelegateSelectors>;
    using ProgressField = HTTPProgressDelegate* RequestNotifier::*;
    using ProgressCall = std::function<void(HTTPProgressDelegate&)>;

    [[nodiscard]] bool hasReceivers() const;
    [[nodiscard]] bool hasProgressReceivers() const;
    [[nodiscard]] Blocks blocks() const;
    [[nodiscard]] Selectors selectors() const;
    [[nodiscard]] HTTPRequestDelegate::Capabilities capabilitiesOfTarget() const;
    [[nodiscard]] std::shared_ptr<HTTPRequestQueueDelegate> takeQueue();
    void send(std::function<void()> call);
    void sendProgress(std::function<void()> call);
    void setProgressDelegate(ProgressField field, HTTPProgressDelegate* delegate);
    [[nodiscard]] HTTPProgressDelegate* progressDelegate(ProgressField field) const;
    void tell(ProgressField field, const ProgressCall& call) const;
    void tellQueueAnd(ProgressField field, const ProgressCall& call) const;

    template <typename Block, typename... Arguments>
    void callBlock(Block RequestBlocks::*block, const Arguments&... arguments) const {
        if (const Blocks all = blocks(); all != nullptr && (*all).*block)
            ((*all).*block)(arguments...);
    }
    template <typename Selector, typename Operation, typename... Arguments>
    void callDelegate(Selector DelegateSelectors::*selector, Operation operation,
                      const Arguments&... arguments) const {
        HTTPRequestDelegate* const target = delegate();
        if (target == nullptr)
            return;
        if (const Selectors all = selectors(); all != nullptr && (*all).*selector)
            ((*all).*selector)(request_, arguments...);
        else
            (target->*operation)(request_, arguments...);
    }
    void ask(bool aboutProxy);

    HTTPRequest& request_;
    std::recursive_mutex& cancelledLock_;  ///< Guards the receivers.
    std::shared_ptr<Mailbox> mailbox_;
    HTTPRequestDelegate* delegate_ = nullptr;
    std::shared_ptr<HTTPRequestQueueDelegate> queue_;
    HTTPProgressDelegate* uploadProgressDelegate_ = nullptr;
    HTTPProgressDelegate* downloadProgressDelegate_ = nullptr;
    Blocks blocks_;
    Selectors selectors_;
    std::atomic<std::int64_t> untoldStored_ = 0;  ///< Bytes in the store.
    bool reportsDirectly_ = false;
};

}  // namespace http
