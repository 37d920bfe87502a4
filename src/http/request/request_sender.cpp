#include "http/request/request_sender.h"

#include "http/content/http_input_stream.h"
#include "http/extras/request_extras.h"
#include "http/http_request.h"
#include "http/http_request_error.h"
#include "http/request/connection_lease.h"
#include "http/request/redirect_rule.h"
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
    : request_(request), parts_(parts), run_(run) {}

bool RequestSender::prepare() {
    RequestState& state = parts_.state;
    if (!isRequestable(state.url)) {
        run_.failWithError(unableToCreateRequestError());
        return false;
    }
    if (!parts_.extras.isProbe() && !buildPostBody())
        return false;
    parts_.extras.messageBegins();
    if (const auto error = parts_.headers.build()) {
        run_.failWithError(*error);
        return false;
    }
    if (parts_.extras.answerInPlaceOfSend())
        return false;
    makeMessage();
    return true;
}

void RequestSender::makeMessage() {
    RequestState& state = parts_.state;
    const auto version = state.options.useHTTPVersionOne ? platform::HTTPVersion::Http10
                                                         : platform::HTTPVersion::Http11;
    state.request = {state.requestMethod, state.url.forTransfer(), version, {}};
    run_.authentication().applyAuthorizationHeader();
    for (const auto& [name, value] : state.options.requestHeaders.fields())
        state.request->headers.set(name, value);
}

bool RequestSender::buildPostBody() {
    RequestState& state = parts_.state;
    if (const auto error = parts_.body.build()) {
        run_.failWithError(*error);
        return false;
    }
    state.postLength = parts_.body.length();
    if (state.postLength == 0)
        return true;
    const QString& method = state.requestMethod;
    if (method == u"GET"_s || method == u"DELETE"_s || method == u"HEAD"_s)
        run_.setRequestMethod(u"POST"_s);
    state.options.requestHeaders.set(u"Content-Length"_s, QString::number(state.postLength));
    return true;
}

void RequestSender::startRequest() {
    RequestState& state = parts_.state;
    if (!state.isInProgress())
        return;
    if (run_.isHeard())
        parts_.notifier.requestStarted();
    resetForSend();
    run_.authentication().prepareSend();
    auto body = parts_.body.open(parts_.shared.bandwidth, [this] { run_.performThrottling(); });
    if (body.failed) {
        run_.failWithError(makeRequestError(HTTPRequestErrorCode::InternalStream,
                                            u"Unable to create read stream"_s));
        return;
    }
    if (!openStream(std::move(body))) {
        parts_.connection.setConnectionCannotBeReused();
        parts_.stream.destroy();
        run_.failWithError(makeRequestError(HTTPRequestErrorCode::InternalStream,
                                            u"Unable to start HTTP connection"_s));
        return;
    }
    parts_.extras.sendBegins();
    state.lastActivityTime = parts_.shared.clock.monotonic();
    run_.statusWatch().start();
}

void RequestSender::resetForSend() {
    RequestState& state = parts_.state;
    parts_.extras.sendIsPrepared();
    state.phase = RequestPhase::Transferring;
    state.totalBytesRead = 0;
    state.lastBytesRead = 0;
    if (state.redirectCount == 0)
        state.originalURL = state.url;
    state.lastBytesSent = 0;
    state.totalBytesSent = 0;
    state.contentLength = 0;
    state.responseHeaders.reset();
    run_.delivery().reset();
    if (state.options.downloadDestinationPath.isEmpty())
        state.rawResponseData = QByteArray();
}

bool RequestSender::openStream(RequestBody::Opened body) {
    const auto client = [this, request = request_.weak_from_this()](HTTPReadStream::Event event) {
        if (const auto alive = request.lock())
            run_.handleNetworkEvent(event);
    };
    return parts_.stream.open(run_.loopInUse()->network(), setup(std::move(body)), client);
}

TransferStream::Setup RequestSender::setup(RequestBody::Opened body) const {
    const RequestState& state = parts_.state;
    TransferStream::Setup setup;
    setup.message = *state.request;
    setup.body = std::move(body.stream);
    setup.bodyLength = setup.body != nullptr ? state.postLength : 0;
    setup.tls = tlsSettings();
    setup.proxy = proxy();
    setup.serverCredentials = run_.authentication().server().connection;
    setup.proxyCredentials = run_.authentication().proxy().connection;
    if (setup.body == nullptr)
        setup.connection =
            parts_.connection.acquire(run_.loopInUse(), connectionCircumstances(setup));
    return setup;
}

platform::TLSSettings RequestSender::tlsSettings() const {
    const RequestOptions& options = parts_.state.options;
    const ClientIdentity& identity = options.clientCertificateIdentity;
    return {options.validatesSecureCertificate || identity.exists(), identity.certificatePath,
            identity.keyPath, options.authoritiesPath};
}

platform::HTTPProxy RequestSender::proxy() const {
    const RequestOptions& options = parts_.state.options;
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
