#include "app/pages/page_fetcher.h"

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <optional>

#include "engine/workers/user_agent.h"
#include "http/http_request.h"
#include "platform/base/run_loop.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

links::FetchedPage failedPage(int errorNumber) {
    links::FetchedPage page;
    page.error = platform::posixError(errorNumber);
    return page;
}

}  // namespace

/// One page on its way from the main thread to a thread that waits for it.
class HTTPPageFetcher::Exchange : public std::enable_shared_from_this<Exchange> {
public:
    explicit Exchange(links::PageRequest request) : pageRequest_(std::move(request)) {}

    // Main thread.

    void begin() {
        if (isFinished()) {
            return;
        }
        request_ = http::HTTPRequest::requestWithURL(pageRequest_.url);
        request_->setTimeOutSeconds(pageRequest_.timeOut);
        request_->setUseCookiePersistence(false);
        request_->setFollowsPermanentRedirect(true);
        request_->setShouldWaitToInflateCompressedResponses(false);
        request_->addRequestHeader(u"User-Agent"_s, engine::defaultUserAgent());
        request_->setBlocks(blocks());
        request_->startAsynchronous();
    }
    void end(links::FetchedPage page) {
        if (request_) {
            request_->clearDelegatesAndCancel();
            request_.reset();
        }
        finish(std::move(page));
    }

    // Any thread.

    /// Nothing: it did not come in time.
    std::optional<links::FetchedPage> wait() {
        std::unique_lock guard(lock_);
        changed_.wait_for(guard, std::chrono::duration<double>(pageRequest_.timeOut),
                          [this] { return page_.has_value(); });
        return page_;
    }
    void finish(links::FetchedPage page) {
        {
            const std::lock_guard guard(lock_);
            if (!page_) {
                page_ = std::move(page);
            }
        }
        changed_.notify_all();
    }

private:
    [[nodiscard]] bool isFinished() {
        const std::lock_guard guard(lock_);
        return page_.has_value();
    }

    http::RequestBlocks blocks() {
        // The request holds the blocks, and this object the request.
        const auto whileAlive = [weak = weak_from_this()](auto act) {
            return [weak, act](const auto&... arguments) {
                if (const auto self = weak.lock()) {
                    act(*self, arguments...);
                }
            };
        };
        http::RequestBlocks blocks;
        blocks.dataReceivedBlock = whileAlive([](Exchange& self, const QByteArray& data) {
            self.body_ += data;
            if (self.body_.size() > self.pageRequest_.maximumBytes) {
                self.end(failedPage(EFBIG));
            }
        });
        // A redirect has a body as well.
        blocks.headersReceivedBlock =
            whileAlive([](Exchange& self, const http::HTTPResponse&) { self.body_.clear(); });
        blocks.completionBlock = whileAlive([](Exchange& self) { self.end(self.received()); });
        blocks.failureBlock = whileAlive([](Exchange& self) {
            links::FetchedPage page;
            page.error = self.request_->error().value_or(platform::posixError(EIO));
            self.end(std::move(page));
        });
        return blocks;
    }

    [[nodiscard]] links::FetchedPage received() const {
        links::FetchedPage page;
        page.data = body_;
        page.response = request_->responseStatusMessage();
        if (const auto headers = request_->responseHeaders()) {
            page.contentType = headers->value(u"Content-Type"_s).value_or(QString());
        }
        return page;
    }

    const links::PageRequest pageRequest_;
    std::shared_ptr<http::HTTPRequest> request_;
    QByteArray body_;

    std::mutex lock_;  ///< Guards page_.
    std::condition_variable changed_;
    std::optional<links::FetchedPage> page_;
};

HTTPPageFetcher::HTTPPageFetcher(platform::RunLoop& mainLoop) : mainLoop_(mainLoop) {}

HTTPPageFetcher::~HTTPPageFetcher() = default;

std::shared_ptr<HTTPPageFetcher::Exchange> HTTPPageFetcher::newExchange(
    const links::PageRequest& request) {
    const std::lock_guard guard(lock_);
    if (isStopped_) {
        return nullptr;
    }
    auto exchange = std::make_shared<Exchange>(request);
    std::erase_if(exchanges_, [](const auto& known) { return known.expired(); });
    exchanges_.push_back(exchange);
    mainLoop_.post([exchange] { exchange->begin(); });
    return exchange;
}

links::FetchedPage HTTPPageFetcher::fetchSynchronously(const links::PageRequest& request) {
    const std::shared_ptr<Exchange> exchange = newExchange(request);
    if (!exchange) {
        return failedPage(ECANCELED);
    }
    std::optional<links::FetchedPage> page = exchange->wait();
    if (page) {
        return std::move(*page);
    }
    exchange->finish(failedPage(ETIMEDOUT));
    const std::lock_guard guard(lock_);
    if (!isStopped_) {
        mainLoop_.post([exchange] { exchange->end(failedPage(ETIMEDOUT)); });
    }
    return failedPage(ETIMEDOUT);
}

void HTTPPageFetcher::stop() {
    std::vector<std::weak_ptr<Exchange>> exchanges;
    {
        const std::lock_guard guard(lock_);
        isStopped_ = true;
        exchanges.swap(exchanges_);
    }
    for (const std::weak_ptr<Exchange>& weak : exchanges) {
        if (const auto exchange = weak.lock()) {
            exchange->end(failedPage(ECANCELED));
        }
    }
}

}  // namespace app
