#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "platform/base/timer.h"
#include "platform/files/descriptor.h"
#include "platform/net/network_loop.h"
#include "platform/net/url.h"

namespace http {

class HTTPRequest;
class TransferLoop;

/// Fetches an automatic configuration script from a file or by HTTP for one request.
///
/// The loop's thread. It must be cancelled or done before the loop ends.
class ProxyScriptSource {
public:
    /// Nothing: it cannot be had.
    using Done = std::function<void(const std::optional<QString>& script)>;

    ProxyScriptSource() = default;
    ~ProxyScriptSource();
    ProxyScriptSource(const ProxyScriptSource&) = delete;
    ProxyScriptSource& operator=(const ProxyScriptSource&) = delete;

    /// `done` comes on a later turn unless it is cancelled before. The file is given up when it has
    /// not been read within `timeOut` seconds; 0: never.
    void readFile(const platform::Url& url, const std::shared_ptr<TransferLoop>& loop,
                  platform::Seconds timeOut, Done done);
    /// On the request thread; `isQueued`: through the shared queue, which may run one more until it
    /// is done.
    void fetch(const platform::Url& url, const std::shared_ptr<TransferLoop>& loop,
               platform::Seconds timeOut, bool isQueued, Done done);
    /// `done` does not come any more.
    void cancel();

private:
    struct Download;

    void handleEvent();
    void finishFile(const std::optional<QString>& script);
    void finishedDownloadingPACFile(const std::shared_ptr<Download>& download, bool isQueued);

    const std::shared_ptr<char> life_ = std::make_shared<char>();  ///< Ends with this object.
    Done done_;
    std::shared_ptr<TransferLoop> loop_;
    std::shared_ptr<HTTPRequest> _PACFileRequest;
    platform::Descriptor _PACFile;
    std::optional<platform::DescriptorWatch> _PACFileReadStream;
    std::optional<platform::Timer> timeOutPACRead_;
    QByteArray _PACFileData;
};

}  // namespace http
