#pragma once

#include <memory>

#include "engine/workers/download_worker_prototype.h"
#include "engine/workers/partial_file.h"
#include "http/http_request_delegate.h"

namespace http {
class HTTPRequest;
}

namespace engine {

/// The worker for addresses of the web. A resumed part is appended to its file.
class DQHTTPRequestDownloadWorker final : public DQDownloadWorkerPrototype,
                                          private http::HTTPRequestDelegate {
public:
    [[nodiscard]] static Pointer make(const Context& context);
    ~DQHTTPRequestDownloadWorker() override;

    [[nodiscard]] bool resumesInSeparateFile() const override { return false; }
    [[nodiscard]] bool truncateAtOffset(qint64 offset) override;
    [[nodiscard]] bool setBound(qint64 length) override;
    [[nodiscard]] bool claimTargetPath() override;
    void setBandwidth(std::shared_ptr<http::BandwidthAccount> account) override;

protected:
    [[nodiscard]] Pointer makeAnother() const override { return make(context()); }
    [[nodiscard]] bool startWithRequest(const WorkerRequest& request, const QString& range,
                                        platform::Seconds timeOut) override;
    void forgetTarget() override { closeFile(); }
    void reset() override;

private:
    explicit DQHTTPRequestDownloadWorker(const Context& context)
        : DQDownloadWorkerPrototype(context) {}

    [[nodiscard]] Capabilities capabilities() const override;
    void requestStarted(http::HTTPRequest& request) override;
    void requestDidReceiveResponseHeaders(http::HTTPRequest& request,
                                          const http::HTTPResponse& response) override;
    void requestWillRedirectToURL(http::HTTPRequest& request, const platform::Url& url) override;
    void requestDidReceiveData(http::HTTPRequest& request, const QByteArray& data) override;
    void requestDidStoreData(http::HTTPRequest& request, std::int64_t count) override;
    void requestFinished(http::HTTPRequest& request) override;
    void requestFailed(http::HTTPRequest& request) override;
    void authenticationNeededForRequest(http::HTTPRequest& request) override;
    void proxyAuthenticationNeededForRequest(http::HTTPRequest& request) override;

    [[nodiscard]] std::optional<platform::Error> openTarget();
    [[nodiscard]] qint64 storeLimit() const;
    void closeFile();
    void takeUpToBound(http::HTTPRequest& request, const QByteArray& data);
    void stopAtBound();
    void discard(http::HTTPRequest& request, qint64 count);
    void beginAgain();
    void acquireAuthentication(http::HTTPRequest& request);
    [[nodiscard]] bool isStoringAnswer() const;
    [[nodiscard]] bool isWholeFile(const QByteArray& data) const;
    void cleanUpActiveRequest(bool mayBeLive);
    void stopWithError(const platform::Error& error);

    std::shared_ptr<http::HTTPRequest> _downloadRequest;
    std::shared_ptr<PartialFile> _downloadFile;  ///< Null before the first byte.
    bool isStoreOffered_ = false;
    int statusCode_ = 0;
    bool lacksChallenge_ = false;
    qint64 discardedBytes_ = 0;  ///< Of an answer that holds nothing of the file.
};

}  // namespace engine
