#include "http/request/proxy_script_source.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>
#include <mutex>
#include <utility>

#include "http/http_request.h"
#include "http/request/request_run.h"
#include "http/shared/shared_state.h"
#include "http/shared/transfer_loop.h"
#include "platform/net/proxies/script_protocol.h"

namespace http {

using platform::Url;

namespace {

constexpr qsizetype maximumBytes = platform::script_protocol::maximumScriptBytes;
/// Ahead of the requests that wait for it.
constexpr int fetchPriority = 4;

std::optional<QString> decodedScript(const QByteArray& data) {
    const auto text = decodedString(data, utf8StringEncoding);
    return text ? text : decodedString(data, latin1StringEncoding);
}

}  // namespace

/// What has come of a script so far. The fetching request may run on another thread than the one
/// that waits for it.
struct ProxyScriptSource::Download {
    std::mutex lock;  ///< Guards data.
    QByteArray data;

    /// False: too much.
    bool append(const QByteArray& block) {
        const std::scoped_lock guard(lock);
        data += block;
        return data.size() <= maximumBytes;
    }
    void clear() {
        const std::scoped_lock guard(lock);
        data.clear();
    }
    QByteArray take() {
        const std::scoped_lock guard(lock);
        return std::exchange(data, {});
    }
};

ProxyScriptSource::~ProxyScriptSource() {
    cancel();
}

void ProxyScriptSource::readFile(const Url& url, const std::shared_ptr<TransferLoop>& loop,
                                 platform::Seconds timeOut, Done done) {
    cancel();
    loop_ = loop;
    done_ = std::move(done);
    const QByteArray path = QFile::encodeName(url.filePath());
    _PACFile =
        platform::Descriptor(open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (_PACFile.isOpen())
        _PACFileReadStream.emplace(loop->network(), _PACFile.get(), [this] { handleEvent(); });
    if (timeOut > 0 || !_PACFile.isOpen())
        timeOutPACRead_.emplace(loop->network().calls())
            .start(_PACFile.isOpen() ? timeOut : 0, [this] { finishFile(std::nullopt); });
}

void ProxyScriptSource::handleEvent() {
    constexpr std::size_t blockSize = 16384;
    char block[blockSize];
    const ssize_t size = read(_PACFile.get(), block, blockSize);
    if (size < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (size > 0)
        _PACFileData.append(block, size);
    if (size < 0 || _PACFileData.size() > maximumBytes)
        finishFile(std::nullopt);
    else if (size == 0)
        finishFile(decodedScript(_PACFileData));
}

void ProxyScriptSource::finishFile(const std::optional<QString>& script) {
    const Done done = std::exchange(done_, nullptr);
    cancel();
    done(script);
}

void ProxyScriptSource::fetch(const Url& url, const std::shared_ptr<TransferLoop>& loop,
                              platform::Seconds timeOut, bool isQueued, Done done) {
    cancel();
    loop_ = loop;
    done_ = std::move(done);
    _PACFileRequest = HTTPRequest::requestWithURL(url);
    _PACFileRequest->internals().becomePACFileRequest();
    _PACFileRequest->setTimeOutSeconds(timeOut);
    _PACFileRequest->setShouldWaitToInflateCompressedResponses(false);
    const auto download = std::make_shared<Download>();
    const std::weak_ptr<HTTPRequest> fetching = _PACFileRequest;
    // It says so under its own lock, so the rest is for later.
    const auto finished = [this, life = std::weak_ptr(life_), loop, fetching, download, isQueued] {
        loop->post([this, life, fetching, download, isQueued] {
            const auto request = fetching.lock();
            if (!life.expired() && request && request == _PACFileRequest)
                finishedDownloadingPACFile(download, isQueued);
        });
    };
    RequestBlocks blocks;
    // What a redirect says in its body is not the script.
    blocks.headersReceivedBlock = [download](const HTTPResponse&) { download->clear(); };
    blocks.dataReceivedBlock = [download, fetching](const QByteArray& data) {
        const auto request = fetching.lock();
        if (!download->append(data) && request)
            request->cancel();
    };
    blocks.completionBlock = finished;
    blocks.failureBlock = finished;
    _PACFileRequest->setBlocks(std::move(blocks));
    if (!isQueued)
        return _PACFileRequest->start();
    _PACFileRequest->setQueuePriority(fetchPriority);
    _PACFileRequest->startAsynchronous();
    HTTPRequest::sharedQueue().changeMaxConcurrentOperationCount(1);
}

void ProxyScriptSource::finishedDownloadingPACFile(const std::shared_ptr<Download>& download,
                                                   bool isQueued) {
    const auto request = std::exchange(_PACFileRequest, nullptr);
    const auto script = request->error()
                            ? std::nullopt
                            : decodedString(download->take(), request->responseEncoding());
    if (isQueued)
        HTTPRequest::sharedQueue().changeMaxConcurrentOperationCount(-1);
    const Done done = std::exchange(done_, nullptr);
    done(script);
}

void ProxyScriptSource::cancel() {
    done_ = nullptr;
    if (_PACFileRequest)
        std::exchange(_PACFileRequest, nullptr)->clearDelegatesAndCancel();
    timeOutPACRead_.reset();
    _PACFileReadStream.reset();
    _PACFile.close();
    _PACFileData.clear();
}

}  // namespace http
