#include "http/request/response_reader.h"

#include <cerrno>
#include <cstdlib>
#include <utility>

#include "http/content/content_type.h"
#include "http/content/http_data_decompressor.h"
#include "http/http_request.h"
#include "http/http_request_error.h"
#include "http/request/connection_lease.h"
#include "http/request/file_output.h"
#include "http/request/progress_reporter.h"
#include "http/request/redirect_rule.h"
#include "http/request/request_body.h"
#include "http/request/request_cache.h"
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

ResponseReader::ResponseReader(RequestParts parts, RequestRun& run) : _parts(parts), _run(run) {}

ResponseReader::~ResponseReader() = default;

void ResponseReader::readResponseHeaders() {
    RequestState& state = _parts.state;
    state.authenticationNeeded = AuthenticationNeeded::None;
    const auto& head = _parts.stream.responseHead();
    if (!head)
        return;
    takeHead(*head);
    _isEndedEarly = false;
    _headTime = _parts.shared.clock.monotonic();
    if (_run.cache().answerAfterHead())
        return;
    if (state.responseStatusCode == 401)
        state.authenticationNeeded = AuthenticationNeeded::Server;
    else if (state.responseStatusCode == 407)
        state.authenticationNeeded = AuthenticationNeeded::Proxy;
    else
        _run.authentication().credentialsWereAccepted();
    parseStringEncodingFromHeaders();
    if (!head->fromProxy)
        takeCookies();
    if (!willRedirect())
        noteLength();
    _parts.connection.judge(*head);
    if (_run.isHeard())
        _parts.notifier.requestReceivedResponseHeaders(
            {state.url, head->statusCode, head->statusLine, head->headers});
}

void ResponseReader::takeHead(const HTTPResponseHead& head) {
    _parts.state.responseHeaders = head.headers;
    _parts.state.responseStatusCode = head.statusCode;
    _parts.state.responseStatusMessage = head.statusLine;
}

void ResponseReader::parseStringEncodingFromHeaders() {
    RequestState& state = _parts.state;
    const auto type = parseContentType(state.responseHeader(u"Content-Type"_s).value_or(QString()));
    state.responseEncoding = type.encoding.value_or(state.options.defaultResponseEncoding);
}

void ResponseReader::takeCookies() {
    RequestState& state = _parts.state;
    state.responseCookies = platform::cookiesFromHeaders(*state.responseHeaders, state.url);
    if (!state.options.useCookiePersistence || state.responseCookies.empty())
        return;
    platform::sharedCookieStorage().setCookies(state.responseCookies, state.url);
    for (const platform::Cookie& cookie : state.responseCookies)
        _parts.shared.cookies.addCookie(cookie);
}

void ResponseReader::noteLength() {
    const RequestState& state = _parts.state;
    const bool isReported =
        state.options.showAccurateProgress && state.options.shouldResetDownloadProgress;
    const auto header = state.responseHeader(u"Content-Length"_s);
    auto length = header ? std::optional(lengthFromHeader(*header)) : std::nullopt;
    if (state.mainRequest == nullptr) {
        _run.noteContentLength(length, isReported);
        return;
    }
    // Servers that compress on the fly announce an empty gzip stream to a HEAD.
    constexpr std::uint64_t emptyGzipStream = 20;
    if (isReported && state.options.allowCompressedResponse && length == emptyGzipStream)
        length = std::nullopt;
    state.mainRequest->internals().noteContentLength(length, isReported);
}

bool ResponseReader::takeCachedHeaders() {
    RequestState& state = _parts.state;
    parseStringEncodingFromHeaders();
    if (state.responseHeaders)
        state.responseCookies = platform::cookiesFromHeaders(*state.responseHeaders, state.url);
    return willRedirect();
}

bool ResponseReader::willRedirect() {
    RequestState& state = _parts.state;
    const auto location = state.responseHeader(u"Location"_s);
    const RedirectKind kind = redirectKind(state.responseStatusCode, state.options);
    if (!state.options.shouldRedirect || !location || kind == RedirectKind::None)
        return false;
    if (_run.isHeard())
        _parts.notifier.requestRedirected();
    state.redirectURL = redirectTarget(state.url, *location).value_or(platform::Url());
    if (kind == RedirectKind::KeepsMethod) {
        _parts.headers.redirectKeepingMethod();
    } else {
        _run.setRequestMethod(u"GET"_s);
        _parts.body.drop();
        state.postLength = 0;
        _parts.headers.redirectAsGet();
    }
    state.needsRedirect = true;
    state.options.requestCookies.clear();
    return true;
}

qsizetype ResponseReader::readLength() const {
    const std::uint64_t length = _parts.state.contentLength;
    const qsizetype wanted = length > largeRead    ? largeRead
                             : length > mediumRead ? mediumRead
                                                   : smallRead;
    return _parts.shared.bandwidth.readLength(
        inflatesOnTheWay() ? std::min(wanted, largestCompressedRead) : wanted);
}

void ResponseReader::handleBytesAvailable() {
    RequestState& state = _parts.state;
    if (!state.responseHeaders)
        readResponseHeaders();
    if (state.complete || !_parts.stream.hasBytesAvailable())
        return;
    QByteArray received = _parts.stream.read(readLength());
    if (received.isEmpty())
        return;
    const auto count = static_cast<std::uint64_t>(received.size());
    state.totalBytesRead += count;
    state.lastActivityTime = _parts.shared.clock.monotonic();
    _parts.shared.bandwidth.incrementBandwidthUsedInLastSecond(count);
    distribute(std::move(received));
    if (!state.complete && isWorthNoMore())
        endEarly();
}

bool ResponseReader::isWorthNoMore() const {
    const RequestState& state = _parts.state;
    const bool isOnTheWay =
        state.needsRedirect || state.authenticationNeeded != AuthenticationNeeded::None;
    return isOnTheWay && (state.totalBytesRead >= mostOnTheWay ||
                          _parts.shared.clock.monotonic() - _headTime >= longestOnTheWay);
}

void ResponseReader::endEarly() {
    _isEndedEarly = true;
    _parts.connection.setConnectionCannotBeReused();
    _parts.stream.stopReceiving();
    handleStreamComplete();
}

bool ResponseReader::inflatesOnTheWay() const {
    const RequestState& state = _parts.state;
    return state.isResponseCompressed() && !state.options.shouldWaitToInflateCompressedResponses;
}

void ResponseReader::distribute(QByteArray received) {
    RequestState& state = _parts.state;
    const bool mustInflate = inflatesOnTheWay();
    QByteArray inflated;
    if (mustInflate) {
        if (_dataDecompressor == nullptr)
            _dataDecompressor = std::make_unique<HTTPDataDecompressor>();
        CodedBytes coded =
            _dataDecompressor->uncompressBytes(received.constData(), received.size());
        if (coded.error) {
            breakOff(*coded.error);
            return;
        }
        inflated = std::move(coded.data);
    }
    if (isRedirectBodyUnwanted())
        return;
    if (_parts.notifier.isDataReceived()) {
        deliver(mustInflate ? std::move(inflated) : std::move(received));
    } else if (state.options.downloadDestinationPath.isEmpty()) {
        state.rawResponseData.append(mustInflate ? inflated : received);
    } else if (const auto error = writeToFile(received, mustInflate ? &inflated : nullptr)) {
        breakOff(*error);
    }
}

void ResponseReader::breakOff(const Error& error) {
    _run.cancelLoad();
    _run.failWithError(error);
}

/// A redirect's body must not get into a file that is gone on with.
bool ResponseReader::isRedirectBodyUnwanted() const {
    const RequestState& state = _parts.state;
    return state.needsRedirect && state.options.shouldRedirect &&
           state.options.allowResumeForFileDownloads;
}

void ResponseReader::deliver(QByteArray data) {
    if (!data.isEmpty() && _run.isHeard())
        _run.delivery().deliver(std::move(data));
}

std::optional<Error> ResponseReader::writeToFile(const QByteArray& received,
                                                 const QByteArray* inflated) {
    const FileOutput::Start start = _parts.file.begin();
    if (start.discarded > 0)
        _parts.progress.incrementDownloadSizeBy(-static_cast<std::int64_t>(start.discarded));
    if (start.error)
        return start.error;
    if (auto error = _parts.file.write(received))
        return error;
    return inflated != nullptr ? _parts.file.writeInflated(*inflated) : std::nullopt;
}

bool ResponseReader::isFinalResponse() const {
    const RequestState& state = _parts.state;
    return !state.needsRedirect && !state.didUseCachedResponse &&
           state.authenticationNeeded == AuthenticationNeeded::None;
}

std::optional<Error> ResponseReader::finishFile() {
    RequestState& state = _parts.state;
    if (isRedirectBodyUnwanted()) {
        _parts.file.close();
        return std::nullopt;
    }
    const bool isEmptyFile = state.totalBytesRead == 0 && isFinalResponse() &&
                             !state.options.downloadDestinationPath.isEmpty() &&
                             !_parts.notifier.isDataReceived();
    if (isEmptyFile)
        if (const auto error = writeToFile({}, nullptr))
            return error;
    return _parts.file.finish();
}

void ResponseReader::handleStreamComplete() {
    RequestState& state = _parts.state;
    _run.statusWatch().stop();
    state.downloadComplete = true;
    if (!state.responseHeaders)
        readResponseHeaders();
    std::optional<Error> fileError;
    {
        const std::scoped_lock guard(_parts.shared.progressLock);
        state.lastBytesSent = state.totalBytesSent;
        state.totalBytesSent = _parts.stream.bodyBytesWritten();
        state.complete = true;
        if (state.contentLength == 0)
            state.contentLength = state.totalBytesRead;
        _parts.progress.updateProgressIndicators();
        _dataDecompressor.reset();
        if (isFinalResponse())
            _parts.body.removeTemporaryFiles();
        fileError = finishFile();
        if (!_isEndedEarly)
            _run.cache().store();
    }
    _parts.connection.endUse();
    if (state.authenticationNeeded == AuthenticationNeeded::None)
        _parts.stream.destroy();
    if (!isFinalResponse())
        return;
    if (fileError)
        _run.failWithError(*fileError);
    else
        _run.requestFinished();
    _run.markAsFinished();
}

void ResponseReader::handleStreamError() {
    const Error error = _parts.stream.error().value_or(
        Error{platform::networkErrorDomain, platform::networkErrorConnectionLost, {}, nullptr});
    if (!_parts.state.error) {
        // A connection that was kept too long says nothing about the server.
        const bool isFreshConnection = !error.is(platform::posixErrorDomain, EPIPE);
        if (isLostConnection(error) && _run.retryUsingNewConnection(isFreshConnection))
            return;
        breakOff(makeRequestError(HTTPRequestErrorCode::ConnectionFailure,
                                  connectionFailureText(error), error));
    } else {
        _run.cancelLoad();
    }
    _run.statusWatch().checkRequestStatus();
}

}  // namespace http
