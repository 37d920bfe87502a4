#include "http/request/proxy_configuration.h"

#include "http/http_request.h"
#include "http/http_request_error.h"
#include "http/request/request_run.h"
#include "http/request/request_state.h"
#include "http/shared/shared_state.h"
#include "platform/base/log.h"
#include "platform/net/proxies/proxy_text.h"
#include "platform/net/proxies/system_proxies.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::HTTPProxy;
using Kind = HTTPProxy::Kind;

namespace {

QString proxyTypeOf(Kind kind, const platform::Url& url) {
    switch (kind) {
        case Kind::Http:
            return url.hasScheme("https") ? proxyTypeHTTPS : proxyTypeHTTP;
        case Kind::Https:
            return proxyTypeTLS;
        case Kind::Socks4:
            return proxyTypeSOCKS4;
        case Kind::Socks5:
            return proxyTypeSOCKS;
        case Kind::None:
            break;
    }
    return proxyTypeNone;
}

}  // namespace

ProxyConfiguration::ProxyConfiguration(HTTPRequest& request, RequestParts parts, RequestRun& run)
    : _request(request), _parts(parts), _run(run) {}

bool ProxyConfiguration::configureProxies() {
    RequestState& state = _parts.state;
    RequestOptions& options = state.options;
    if (state.isPACFileRequest || !options.proxyHost.isEmpty() || options.proxyPort != 0)
        return true;
    if (options.PACurl.isEmpty()) {
        const auto choices = _parts.shared.proxies->proxiesForURL(state.url);
        if (!choices) {
            _run.failWithError(makeRequestError(
                HTTPRequestErrorCode::InternalStream,
                u"Unable to obtain information on proxy servers needed for request"_s));
            return false;
        }
        const platform::ProxyChoice& first = choices->at(0);
        if (first.script.isEmpty()) {
            use(first.proxy);
            return true;
        }
        options.PACurl = first.script;
    }
    fetchPACFile();
    return false;
}

void ProxyConfiguration::fetchPACFile() {
    RequestState& state = _parts.state;
    const platform::Url url = state.options.PACurl;
    const auto received = [this, request = _request.weak_from_this()](const auto& script) {
        const auto alive = request.lock();
        if (alive == nullptr)
            return;
        const std::scoped_lock guard(_parts.state.cancelledLock);
        if (script)
            runPACScript(*script);
        else
            startWith(std::nullopt);
    };
    if (url.isFile())
        _source.readFile(url, _run.loopInUse(), state.options.timeOutSeconds, received);
    else if (url.hasScheme("http") || url.hasScheme("https"))
        _source.fetch(url, _run.loopInUse(), state.options.timeOutSeconds, !state.isSynchronous,
                      received);
    else
        _run.startRequest();
}

void ProxyConfiguration::runPACScript(const QString& script) {
    _scriptRun.emplace(_run.loopInUse()->network(), script, _parts.state.url,
                       [this, request = _request.weak_from_this()](const auto& answer) {
                           const auto alive = request.lock();
                           if (alive == nullptr)
                               return;
                           const std::scoped_lock guard(_parts.state.cancelledLock);
                           _scriptRun.reset();
                           startWith(answer);
                       });
}

/// A script that names no proxy, for whatever reason, means none.
void ProxyConfiguration::startWith(const std::optional<QString>& answer) {
    const auto proxies = platform::proxiesFromScriptAnswer(answer.value_or(QString()));
    if (!proxies.empty())
        use(proxies.front());
    _run.startRequest();
}

void ProxyConfiguration::use(const HTTPProxy& proxy) {
    RequestOptions& options = _parts.state.options;
    options.proxyHost = proxy.host;
    options.proxyPort = proxy.port;
    options.proxyType = proxyTypeOf(proxy.kind, _parts.state.url);
    platform::debugLog([&] {
        return u"proxy for %1: %2 %3:%4"_s
            .arg(_parts.state.url.host(), options.proxyType, proxy.host)
            .arg(proxy.port);
    });
    if (proxy.user.isEmpty() || !options.proxyUsername.isEmpty())
        return;
    options.proxyUsername = proxy.user;
    options.proxyPassword = proxy.password;
}

void ProxyConfiguration::cancelLoad() {
    _source.cancel();
    _scriptRun.reset();
}

}  // namespace http
