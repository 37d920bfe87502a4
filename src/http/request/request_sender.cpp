#include "http/request/request_sender.h"

#include "http/content/http_input_stream.h"
#include "http/http_request.h"
#include "http/http_request_error.h"
#include "http/request/connection_lease.h"
#include "http/request/file_output.h"
#include "http/request/progress_reporter.h"
#include "http/request/redirect_rule.h"
#include "http/request/request_cache.h"
#include "http/request/request_header_builder.h"
#include "http/request/request_notifier.h"
#include "http/request/request_run.h"
#include "http/request/request_state.h"
#include "http/request/status_watch.h"
#include "http/shared/shared_state.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::HTTPReadStream;

RequestSender::RequestSender(HTTPRequest& request, RequestParts parts, RequestRun& run)
    : _request(request), _parts(parts), _run(run) {}

bool RequestSender::prepare() {
    RequestState& state = _parts.state;
    if (!isRequestable(state.url)) {
        _run.failWithError(unableToCreateRequestError());
        return false;
    }
    if (state.mainRequest == nullptr && !buildPostBody())
        return false;
    if (state.requestMethod != u"GET"_s)
        state.options.downloadCache = nullptr;
    if (state.mainRequest != nullptr)
        state.mainRequest->internals().buildRequestHeaders();
    if (const auto error = _parts.headers.build()) {
        _run.failWithError(*error);
        return false;
    }
    if (_run.cache().answerBeforeSend())
        return false;
    makeMessage();
    return true;
}

void RequestSender::makeMessage() {
    RequestState& state = _parts.state;
    const auto version = state.options.useHTTPVersionOne ? platform::HTTPVersion::Http10
                                                         : platform::HTTPVersion::Http11;
    state.request = {state.requestMethod, state.url.forTransfer(), version, {}};
    _run.authentication().applyAuthorizationHeader();
    for (const auto& [name, value] : state.options.requestHeaders.fields())
        state.request->headers.set(name, value);
}

bool RequestSender::buildPostBody() {
    RequestState& state = _parts.state;
    if (const auto error = _parts.body.build()) {
        _run.failWithError(*error);
        return false;
    }
    state.postLength = _parts.body.length();
    if (state.postLength == 0)
        return true;
    const QString& method = state.requestMethod;
    if (method == u"GET"_s || method == u"DELETE"_s || method == u"HEAD"_s)
        _run.setRequestMethod(u"POST"_s);
    state.options.requestHeaders.set(u"Content-Length"_s, QString::number(state.postLength));
    return true;
}

void RequestSender::startRequest() {
    RequestState& state = _parts.state;
    if (state.cancelled || !state.inProgress)
        return;
    if (_run.isHeard())
        _parts.notifier.requestStarted();
    resetForSend();
    _run.authentication().prepareSend();
    auto body = _parts.body.open(_parts.shared.bandwidth, [this] { _run.performThrottling(); });
    if (body.failed) {
        _run.failWithError(makeRequestError(HTTPRequestErrorCode::InternalStream,
                                            u"Unable to create read stream"_s));
        return;
    }
    if (!openStream(std::move(body))) {
        _parts.connection.setConnectionCannotBeReused();
        _parts.stream.destroy();
        _run.failWithError(makeRequestError(HTTPRequestErrorCode::InternalStream,
                                            u"Unable to start HTTP connection"_s));
        return;
    }
    if (state.mainRequest == nullptr)
        _parts.progress.sendBegins();
    state.lastActivityTime = _parts.shared.clock.monotonic();
    _run.statusWatch().start();
}

void RequestSender::resetForSend() {
    RequestState& state = _parts.state;
    // Where the next response goes on in its file is decided by that response.
    _parts.file.close();
    state.downloadComplete = false;
    state.complete = false;
    state.totalBytesRead = 0;
    state.lastBytesRead = 0;
    if (state.redirectCount == 0)
        state.originalURL = state.url;
    if (state.lastBytesSent > 0)
        _parts.progress.removeUploadProgressSoFar();
    state.lastBytesSent = 0;
    state.totalBytesSent = 0;
    state.contentLength = 0;
    state.responseHeaders.reset();
    _run.delivery().reset();
    if (state.options.downloadDestinationPath.isEmpty())
        state.rawResponseData = QByteArray();
}

bool RequestSender::openStream(RequestBody::Opened body) {
    const auto client = [this, request = _request.weak_from_this()](HTTPReadStream::Event event) {
        if (const auto alive = request.lock())
            _run.handleNetworkEvent(event);
    };
    return _parts.stream.open(_run.loopInUse()->network(), setup(std::move(body)), client);
}

TransferStream::Setup RequestSender::setup(RequestBody::Opened body) const {
    const RequestState& state = _parts.state;
    TransferStream::Setup setup;
    setup.message = *state.request;
    setup.body = std::move(body.stream);
    setup.bodyLength = setup.body != nullptr ? state.postLength : 0;
    setup.tls = tlsSettings();
    setup.proxy = proxy();
    setup.serverCredentials = _run.authentication().server().connection;
    setup.proxyCredentials = _run.authentication().proxy().connection;
    if (setup.body == nullptr)
        setup.connection =
            _parts.connection.acquire(_run.loopInUse(), connectionCircumstances(setup));
    return setup;
}

platform::TLSSettings RequestSender::tlsSettings() const {
    const RequestOptions& options = _parts.state.options;
    const ClientIdentity& identity = options.clientCertificateIdentity;
    return {options.validatesSecureCertificate || identity.exists(), identity.certificatePath,
            identity.keyPath, options.authoritiesPath};
}

platform::HTTPProxy RequestSender::proxy() const {
    const RequestOptions& options = _parts.state.options;
    if (options.proxyHost.isEmpty() || options.proxyPort == 0)
        return {};
    using Kind = platform::HTTPProxy::Kind;
    Kind kind = Kind::Http;
    if (options.proxyType == proxyTypeSOCKS)
        kind = Kind::Socks5;
    else if (options.proxyType == proxyTypeSOCKS4)
        kind = Kind::Socks4;
    else if (options.proxyType == proxyTypeTLS)
        kind = Kind::Https;
    return {kind, options.proxyHost, options.proxyPort, options.proxyUsername,
            options.proxyPassword};
}

}  // namespace http
