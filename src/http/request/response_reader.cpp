#include "http/request/response_reader.h"

#include <cerrno>
#include <cstdlib>
#include <utility>

#include "http/content/content_type.h"
#include "http/content/http_data_decompressor.h"
#include "http/extras/request_extras.h"
#include "http/http_request.h"
#include "http/http_request_error.h"
#include "http/request/connection_lease.h"
#include "http/request/redirect_rule.h"
#include "http/request/request_body.h"
#include "http/request/request_header_builder.h"
#include "http/request/request_notifier.h"
#include "http/request/request_run.h"
#include "http/request/request_state.h"
#include "http/request/status_watch.h"
#include "http/request/transfer_stream.h"
#include "http/shared/shared_state.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::Error;
using platform::HTTPResponseHead;

namespace {

constexpr qsizetype smallRead = 16384;
constexpr qsizetype mediumRead = 65536;
constexpr qsizetype largeRead = 262144;
/// Of a body that is inflated as it comes, where each byte can become a thousand.
constexpr qsizetype largestCompressedRead = 16384;

/// Of a body that only comes before the answer that is wanted: in bytes, and in seconds.
constexpr std::uint64_t mostOnTheWay = 65536;
constexpr platform::Seconds longestOnTheWay = 10;

/// As C reads numbers, so "0x" is hexadecimal and a leading "0" octal. The transport holds the
/// body to the decimal reading; this one serves the books alone.
std::uint64_t lengthFromHeader(const QString& text) {
    return std::strtoull(text.toLatin1().constData(), nullptr, 0);
}

bool isLostConnection(const Error& error) {
    return error.is(platform::posixErrorDomain, ENOTCONN) ||
           error.is(platform::posixErrorDomain, EPIPE) ||
           error.is(platform::networkErrorDomain, platform::networkErrorConnectionLost);
}

QString connectionFailureText(const Error& error) {
    const QString text = u"A connection failure occurred"_s;
    constexpr int lowest = -9818;
    const bool isSecurityProblem = error.domain == platform::securityErrorDomain &&
                                   error.code >= lowest &&
                                   error.code <= platform::securityErrorHandshake;
    if (!isSecurityProblem)
        return text;
    return u"%1: SSL problem (Possible causes may include a bad/expired/self-signed certificate, "
           "clock set to wrong date)"_s.arg(text);
}

}  // namespace

ResponseReader::ResponseReader(RequestParts parts, RequestRun& run) : parts_(parts), run_(run) {}

ResponseReader::~ResponseReader() = default;

void ResponseReader::readResponseHeaders() {
    RequestState& state = parts_.state;
    state.sequel = Sequel::Nothing;
    const auto& head = parts_.stream.responseHead();
    if (!head)
        return;
    takeHead(*head);
    isEndedEarly_ = false;
    headTime_ = parts_.shared.clock.monotonic();
    if (parts_.extras.answerInPlaceOfBody())
        return;
    if (state.responseStatusCode == 401)
        state.sequel = Sequel::ServerCredentials;
    else if (state.responseStatusCode == 407)
        state.sequel = Sequel::ProxyCredentials;
    else
        run_.authentication().credentialsWereAccepted();
    parseStringEncodingFromHeaders();
    if (!head->fromProxy)
        takeCookies();
    if (!willRedirect())
        noteLength();
    parts_.connection.judge(*head);
    if (run_.isHeard())
        parts_.notifier.requestReceivedResponseHeaders(
            {state.url, head->statusCode, head->statusLine, head->headers});
}

void ResponseReader::takeHead(const HTTPResponseHead& head) {
    parts_.state.responseHeaders = head.headers;
    parts_.state.responseStatusCode = head.statusCode;
    parts_.state.responseStatusMessage = head.statusLine;
}

void ResponseReader::parseStringEncodingFromHeaders() {
    RequestState& state = parts_.state;
    const auto type = parseContentType(state.responseHeader(u"Content-Type"_s).value_or(QString()));
    state.responseEncoding = type.encoding.value_or(state.options.defaultResponseEncoding);
}

void ResponseReader::takeCookies() {
    RequestState& state = parts_.state;
    state.responseCookies = platform::cookiesFromHeaders(*state.responseHeaders, state.url);
    if (!state.options.useCookiePersistence || state.responseCookies.empty())
        return;
    platform::sharedCookieStorage().setCookies(state.responseCookies, state.url);
    for (const platform::Cookie& cookie : state.responseCookies)
        parts_.shared.cookies.addCookie(cookie);
}

void ResponseReader::noteLength() {
    const RequestState& state = parts_.state;
    const bool isReported =
        state.options.showAccurateProgress && state.options.shouldResetDownloadProgress;
    const auto header = state.responseHeader(u"Content-Length"_s);
    auto length = header ? std::optional(lengthFromHeader(*header)) : std::nullopt;
    if (state.mainRequest == nullptr) {
        run_.noteContentLength(length, isReported);
        return;
    }
    // Servers that compress on the fly announce an empty gzip stream to a HEAD.
    constexpr std::uint64_t emptyGzipStream = 20;
    if (isReported && state.options.allowCompressedResponse && length == emptyGzipStream)
        length = std::nullopt;
    state.mainRequest->internals().noteContentLength(length, isReported);
}

bool ResponseReader::takeCachedHeaders() {
    RequestState& state = parts_.state;
    parseStringEncodingFromHeaders();
    if (state.responseHeaders)
        state.responseCookies = platform::cookiesFromHeaders(*state.responseHeaders, state.url);
    return willRedirect();
}

bool ResponseReader::willRedirect() {
    RequestState& state = parts_.state;
    const auto location = state.responseHeader(u"Location"_s);
    const RedirectKind kind = redirectKind(state.responseStatusCode, state.options);
    if (!state.options.shouldRedirect || !location || kind == RedirectKind::None)
        return false;
    if (run_.isHeard())
        parts_.notifier.requestRedirected();
    state.redirectURL = redirectTarget(state.url, *location).value_or(platform::Url());
    if (kind == RedirectKind::KeepsMethod) {
        parts_.headers.redirectKeepingMethod();
    } else {
        run_.setRequestMethod(u"GET"_s);
        parts_.body.drop();
        state.postLength = 0;
        parts_.headers.redirectAsGet();
    }
    state.sequel = Sequel::Redirect;
    state.options.requestCookies.clear();
    return true;
}

qsizetype ResponseReader::readLength() const {
    const std::uint64_t length = parts_.state.contentLength;
    // What has no length may be as long as any; it is gathered by the stream.
    const qsizetype wanted = length == 0           ? largeRead
                             : length > largeRead  ? largeRead
                             : length > mediumRead ? mediumRead
                                                   : smallRead;
    const qsizetype allowed = parts_.shared.bandwidth.readLength(
        inflatesOnTheWay() ? std::min(wanted, largestCompressedRead) : wanted);
    const auto& own = parts_.state.options.ownBandwidth;
    return own ? own->readLength(allowed) : allowed;
}

void ResponseReader::handleBytesAvailable() {
    RequestState& state = parts_.state;
    if (!state.responseHeaders)
        readResponseHeaders();
    if (state.isComplete() || !parts_.stream.hasBytesAvailable())
        return;
    QByteArray received = parts_.stream.read(readLength());
    if (received.isEmpty())
        return;
    const auto count = static_cast<std::uint64_t>(received.size());
    state.totalBytesRead += count;
    state.lastActivityTime = parts_.shared.clock.monotonic();
    parts_.shared.bandwidth.incrementBandwidthUsedInLastSecond(count);
    if (const auto& own = state.options.ownBandwidth)
        own->incrementBandwidthUsedInLastSecond(count);
    distribute(std::move(received));
    if (!state.isComplete() && isWorthNoMore())
        endEarly();
}

bool ResponseReader::isWorthNoMore() const {
    const RequestState& state = parts_.state;
    return state.sequel != Sequel::Nothing &&
           (state.totalBytesRead >= mostOnTheWay ||
            parts_.shared.clock.monotonic() - headTime_ >= longestOnTheWay);
}

void ResponseReader::endEarly() {
    isEndedEarly_ = true;
    parts_.connection.setConnectionCannotBeReused();
    parts_.stream.stopReceiving();
    handleStreamComplete();
}

bool ResponseReader::inflatesOnTheWay() const {
    const RequestState& state = parts_.state;
    return state.isResponseCompressed() && !state.options.shouldWaitToInflateCompressedResponses;
}

void ResponseReader::distribute(QByteArray received) {
    RequestState& state = parts_.state;
    const bool mustInflate = inflatesOnTheWay();
    QByteArray inflated;
    if (mustInflate) {
        if (dataDecompressor_ == nullptr)
            dataDecompressor_ = std::make_unique<HTTPDataDecompressor>();
        CodedBytes coded =
            dataDecompressor_->uncompressBytes(received.constData(), received.size());
        if (coded.error) {
            breakOff(*coded.error);
            return;
        }
        inflated = std::move(coded.data);
    }
    if (!parts_.extras.wantsBody())
        return;
    if (parts_.notifier.isDataReceived()) {
        deliver(mustInflate ? std::move(inflated) : std::move(received));
    } else if (!parts_.extras.takesBody()) {
        state.rawResponseData.append(mustInflate ? inflated : received);
    } else if (const auto error =
                   parts_.extras.write(received, mustInflate ? &inflated : nullptr)) {
        breakOff(*error);
    }
}

void ResponseReader::breakOff(const Error& error) {
    run_.cancelLoad();
    run_.failWithError(error);
}

void ResponseReader::deliver(QByteArray data) {
    if (!data.isEmpty() && run_.isHeard())
        run_.delivery().deliver(std::move(data));
}

bool ResponseReader::isFinalResponse() const {
    return parts_.state.sequel == Sequel::Nothing && !parts_.extras.isCacheUsed();
}

void ResponseReader::handleStreamComplete() {
    RequestState& state = parts_.state;
    run_.statusWatch().stop();
    state.phase = RequestPhase::Answered;
    if (!state.responseHeaders)
        readResponseHeaders();
    state.lastBytesSent = state.totalBytesSent;
    state.totalBytesSent = parts_.stream.bodyBytesWritten();
    if (state.contentLength == 0)
        state.contentLength = state.totalBytesRead;
    dataDecompressor_.reset();
    if (isFinalResponse())
        parts_.body.removeTemporaryFiles();
    const auto fileError = parts_.extras.responseEnds({isFinalResponse(), !isEndedEarly_});
    parts_.connection.endUse();
    if (!state.needsCredentials())
        parts_.stream.destroy();
    if (!isFinalResponse())
        return;
    if (fileError)
        run_.failWithError(*fileError);
    else
        run_.requestFinished();
    run_.markAsFinished();
}

void ResponseReader::handleStreamError() {
    const Error error = parts_.stream.error().value_or(
        Error{platform::networkErrorDomain, platform::networkErrorConnectionLost, {}, nullptr});
    if (!parts_.state.error) {
        // A connection that was kept too long says nothing about the server.
        const bool isFreshConnection = !error.is(platform::posixErrorDomain, EPIPE);
        if (isLostConnection(error) && run_.retryUsingNewConnection(isFreshConnection))
            return;
        breakOff(makeRequestError(HTTPRequestErrorCode::ConnectionFailure,
                                  connectionFailureText(error), error));
    } else {
        run_.cancelLoad();
    }
    run_.statusWatch().checkRequestStatus();
}

}  // namespace http
