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
    : request_(request), parts_(parts), run_(run) {}

bool ProxyConfiguration::configureProxies() {
    RequestState& state = parts_.state;
    RequestOptions& options = state.options;
    if (state.role == RequestRole::ProxyScript || !options.proxyHost.isEmpty() ||
        options.proxyPort != 0)
        return true;
    if (options.PACurl.isEmpty()) {
        const auto choices = parts_.shared.proxies->proxiesForURL(state.url);
        if (!choices) {
            const QString text =
                u"Unable to obtain information on proxy servers needed for request"_s;
            run_.failWithError(
                makeRequestError(HTTPRequestErrorCode::InternalStream, text,
                                 {platform::networkErrorDomain, platform::networkErrorProxySettings,
                                  u"The settings for proxies cannot be understood"_s, nullptr}));
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
    RequestState& state = parts_.state;
    const platform::Url url = state.options.PACurl;
    const auto received = [this, request = request_.weak_from_this()](const auto& script) {
        const auto alive = request.lock();
        if (alive == nullptr)
            return;
        const std::scoped_lock guard(parts_.state.cancelledLock);
        if (script)
            runPACScript(*script);
        else
            startWith(std::nullopt);
    };
    if (url.isFile())
        source_.readFile(url, run_.loopInUse(), state.options.timeOutSeconds, received);
    else if (url.hasScheme("http") || url.hasScheme("https"))
        source_.fetch(url, run_.loopInUse(), state.options.timeOutSeconds,
                      state.role != RequestRole::Synchronous, received);
    else
        run_.startRequest();
}

void ProxyConfiguration::runPACScript(const QString& script) {
    scriptRun_.emplace(run_.loopInUse()->network(), script, parts_.state.url,
                       [this, request = request_.weak_from_this()](const auto& answer) {
                           const auto alive = request.lock();
                           if (alive == nullptr)
                               return;
                           const std::scoped_lock guard(parts_.state.cancelledLock);
                           scriptRun_.reset();
                           startWith(answer);
                       });
}

/// A script that names no proxy, for whatever reason, means none.
void ProxyConfiguration::startWith(const std::optional<QString>& answer) {
    const auto proxies = platform::proxiesFromScriptAnswer(answer.value_or(QString()));
    if (!proxies.empty())
        use(proxies.front());
    run_.startRequest();
}

void ProxyConfiguration::use(const HTTPProxy& proxy) {
    RequestOptions& options = parts_.state.options;
    options.proxyHost = proxy.host;
    options.proxyPort = proxy.port;
    options.proxyType = proxyTypeOf(proxy.kind, parts_.state.url);
    if (options.isDebugLogged || platform::isDebugLogEnabled()) {
        platform::writeDebugLine(
            u"proxy for %1: %2 %3:%4"_s.arg(parts_.state.url.host(), options.proxyType, proxy.host)
                .arg(proxy.port));
    }
    if (proxy.user.isEmpty() || !options.proxyUsername.isEmpty())
        return;
    options.proxyUsername = proxy.user;
    options.proxyPassword = proxy.password;
}

void ProxyConfiguration::cancelLoad() {
    source_.cancel();
    scriptRun_.reset();
}

}  // namespace http
