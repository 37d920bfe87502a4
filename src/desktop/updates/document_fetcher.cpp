#include "desktop/updates/document_fetcher.h"

#include <utility>

#include "http/http_request.h"

namespace desktop {
namespace {

constexpr platform::Seconds timeOut = 10.0;
constexpr qsizetype largestDocument = 256LL * 1024;
constexpr int statusOk = 200;

}  // namespace

std::optional<platform::Url> webAddress(const QString& text) {
    const auto url = platform::Url::parse(text);
    const QString scheme = url ? url->scheme().toLower() : QString();
    return scheme == u"https" || scheme == u"http" ? url : std::nullopt;
}

class HTTPDocumentFetcher::Exchange : public std::enable_shared_from_this<Exchange> {
public:
    Exchange(platform::RunLoop& loop, Answer answer)
        : answer_(std::move(answer)), deadline_(loop) {}
    ~Exchange() { drop(); }
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    void begin(const platform::Url& url) {
        request_ = http::HTTPRequest::requestWithURL(url);
        request_->setTimeOutSeconds(timeOut);
        request_->setUseCookiePersistence(false);
        http::RequestBlocks blocks;
        const auto whileAlive = [weak = weak_from_this()](auto act) {
            return [weak, act](const auto&... arguments) {
                if (const auto self = weak.lock()) {
                    act(*self, arguments...);
                }
            };
        };
        // A redirect has a body as well.
        blocks.headersReceivedBlock =
            whileAlive([](Exchange& self, const http::HTTPResponse&) { self.body_.clear(); });
        blocks.dataReceivedBlock = whileAlive([](Exchange& self, const QByteArray& data) {
            self.body_ += data;
            if (self.body_.size() > largestDocument) {
                self.end({});
            }
        });
        blocks.completionBlock = whileAlive([](Exchange& self) {
            const bool isOk = self.request_->responseStatusCode() == statusOk;
            self.end(isOk ? std::optional(self.body_) : std::nullopt);
        });
        blocks.failureBlock = whileAlive([](Exchange& self) { self.end({}); });
        request_->setBlocks(blocks);
        // Also for a server that sends a byte now and then.
        deadline_.start(timeOut, [this] { end({}); });
        request_->startAsynchronous();
    }

    [[nodiscard]] bool hasEnded() const { return !answer_; }

private:
    void end(const std::optional<QByteArray>& document) {
        const auto kept = shared_from_this();
        drop();
        if (const Answer answer = std::exchange(answer_, {})) {
            answer(document);
        }
    }
    void drop() {
        deadline_.cancel();
        if (request_) {
            request_->clearDelegatesAndCancel();
            request_.reset();
        }
    }

    Answer answer_;
    platform::Timer deadline_;
    std::shared_ptr<http::HTTPRequest> request_;
    QByteArray body_;
};

HTTPDocumentFetcher::HTTPDocumentFetcher(platform::RunLoop& loop) : loop_(loop) {}

HTTPDocumentFetcher::~HTTPDocumentFetcher() = default;

void HTTPDocumentFetcher::fetch(const QString& address, Answer answer) {
    const std::optional<platform::Url> url = webAddress(address);
    if (!url) {
        answer({});
        return;
    }
    exchanges_.remove_if([](const auto& exchange) { return exchange->hasEnded(); });
    exchanges_.push_back(std::make_shared<Exchange>(loop_, std::move(answer)));
    exchanges_.back()->begin(*url);
}

}  // namespace desktop
