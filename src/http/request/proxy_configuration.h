#pragma once

#include <QString>
#include <optional>

#include "http/request/proxy_script_source.h"
#include "http/request/request_parts.h"
#include "platform/net/http_read_stream.h"
#include "platform/net/proxies/script_run.h"

namespace http {

class HTTPRequest;
class RequestRun;

/// Finds the proxy of one request: the one that was set on it, else what the system says for its
/// URL, which may be that a script decides. What has been found stays for every later send.
///
/// The request's loop, under its lock.
class ProxyConfiguration {
public:
    ProxyConfiguration(HTTPRequest& request, RequestParts parts, RequestRun& run);

    /// True: the request can be sent now. False: it has failed, or `startRequest` will be called
    /// when a proxy has been found, or none.
    [[nodiscard]] bool configureProxies();
    /// Gives up a search under way.
    void cancelLoad();

private:
    void fetchPACFile();
    void runPACScript(const QString& script);
    void startWith(const std::optional<QString>& answer);
    void use(const platform::HTTPProxy& proxy);

    HTTPRequest& request_;
    RequestParts parts_;
    RequestRun& run_;
    ProxyScriptSource source_;
    std::optional<platform::ProxyScriptRun> scriptRun_;
};

}  // namespace http
