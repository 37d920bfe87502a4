#include "platform/net/http_read_stream_private.h"

#include <algorithm>

#include <openssl/ssl.h>
#include <sys/socket.h>

#include "platform/net/body_framing.h"
#include "platform/net/status_codes.h"
#include "platform/net/transfer_error.h"
#include "platform/net/wire_bytes.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// With this much unread the socket is left alone...
constexpr qsizetype pauseAt = 1024LL * 1024;
/// ... until no more than this is left.
constexpr qsizetype resumeAt = 256LL * 1024;
/// Turns in which bytes go on arriving, before an unfinished block is handed out.
constexpr int mostDeferrals = 32;
constexpr int mostEventsInTurn = 16;

}  // namespace

HTTPReadStream::Private::Private(NetworkLoop& loop, HTTPRequestMessage message,
                                 HTTPBodySource* body, std::uint64_t bodyLength)
    : buffer(loop.internals().blocks()),
      loop_(&loop.internals()),
      loopLife_(loop_->life()),
      body_(body, bodyLength) {
    setup.message = std::move(message);
    if (body != nullptr)
        setup.bodyLength = bodyLength;
}

HTTPReadStream::Private::~Private() {
    close();
}

bool HTTPReadStream::Private::open() {
    if (isOpen_ || easy_ || loop_ == nullptr || loopLife_.expired())
        return false;
    easy_.reset(curl_easy_init());
    if (identity != nullptr)
        kept_ = identity->internals().connection();
    if (kept_ != nullptr)
        tlsEnd_ = kept_->end;
    setup.sharedConnections = kept_ != nullptr ? kept_->share() : nullptr;
    lines_ = requestLines(setup.message, {setup.proxy.speaksHTTP(), body_.exists()});
    reader_.emplace(askedRange(setup.message.headers),
                    ResponseHeadReader::Negotiates{
                        setup.serverCredentials.scheme != ConnectionAuthentication::None,
                        setup.proxyCredentials.scheme != ConnectionAuthentication::None});
    isOpen_ = easy_ && lines_ && applySetup(easy_.get(), setup, *lines_) && setCallbacks() &&
              loop_->add(easy_.get(), *this);
    return isOpen_;
}

void HTTPReadStream::Private::close() {
    if (!isOpen_)
        return;
    isOpen_ = false;
    releaseHandle();
    loop_->remove(*this);
    buffer.clear();
}

void HTTPReadStream::Private::loopEnds() {
    close();
    loop_ = nullptr;
}

void HTTPReadStream::Private::releaseHandle() {
    if (!easy_)
        return;
    bodyBytesWritten_ = bodyBytesWritten();
    loop_->removeHandle(easy_.get());
    easy_.reset();
    kept_.reset();
}

bool HTTPReadStream::Private::setCallbacks() {
    CURL* const easy = easy_.get();
    const auto set = [easy](CURLoption option, auto value) {
        return curl_easy_setopt(easy, option, value) == CURLE_OK;
    };
    curl_write_callback onHeader = [](char* bytes, size_t, size_t count, void* self) {
        return static_cast<Private*>(self)->takeHeaderLine({bytes, count});
    };
    curl_write_callback onBody = [](char* bytes, size_t, size_t count, void* self) {
        return static_cast<Private*>(self)->takeBody(bytes, count);
    };
    curl_read_callback onRead = [](char* target, size_t size, size_t count, void* self) {
        return static_cast<Private*>(self)->giveBody(target, size * count);
    };
    curl_seek_callback onSeek = [](void* self, curl_off_t offset, int origin) {
        const bool isStart = offset == 0 && origin == SEEK_SET;
        return isStart && static_cast<Private*>(self)->body_.rewind() ? CURL_SEEKFUNC_OK
                                                                      : CURL_SEEKFUNC_FAIL;
    };
    curl_opensocket_callback onSocket = [](void* self, curlsocktype, curl_sockaddr* address) {
        return static_cast<Private*>(self)->openSocket(*address);
    };
    curl_prereq_callback onRequest = [](void* self, char*, char*, int, int localPort) {
        static_cast<Private*>(self)->requestStarts(localPort);
        return CURL_PREREQFUNC_OK;
    };
    curl_xferinfo_callback onProgress = [](void* self, curl_off_t, curl_off_t, curl_off_t,
                                           curl_off_t) {
        return static_cast<Private*>(self)->isFlooded() ? 1 : 0;
    };
    curl_ssl_ctx_callback onSecure = [](CURL*, void* context, void* self) {
        static_cast<Private*>(self)->securesConnection(context);
        return CURLE_OK;
    };
    return set(CURLOPT_ERRORBUFFER, reason_.data()) && set(CURLOPT_HEADERFUNCTION, onHeader) &&
           set(CURLOPT_HEADERDATA, this) && set(CURLOPT_WRITEFUNCTION, onBody) &&
           set(CURLOPT_WRITEDATA, this) && set(CURLOPT_READFUNCTION, onRead) &&
           set(CURLOPT_READDATA, this) && set(CURLOPT_SEEKFUNCTION, onSeek) &&
           set(CURLOPT_SEEKDATA, this) && set(CURLOPT_OPENSOCKETFUNCTION, onSocket) &&
           set(CURLOPT_OPENSOCKETDATA, this) && set(CURLOPT_PREREQFUNCTION, onRequest) &&
           set(CURLOPT_PREREQDATA, this) && set(CURLOPT_XFERINFOFUNCTION, onProgress) &&
           set(CURLOPT_XFERINFODATA, this) && set(CURLOPT_NOPROGRESS, 0L) &&
           set(CURLOPT_SSL_CTX_FUNCTION, onSecure) && set(CURLOPT_SSL_CTX_DATA, this) &&
           (kept_ == nullptr || (set(CURLOPT_CLOSESOCKETFUNCTION, &KeptConnection::closeSocket) &&
                                 set(CURLOPT_CLOSESOCKETDATA, kept_.get())));
}

curl_socket_t HTTPReadStream::Private::openSocket(const curl_sockaddr& address) {
    // libcurl would silently send the request again when a connection kept open turns out dead.
    // Whether to do that is the client's decision.
    if (usedExistingConnection && !reader_->hasSeenAnswer()) {
        isRetryRefused_ = true;
        return CURL_SOCKET_BAD;
    }
    ++socketsOpened_;
    const curl_socket_t socket =
        ::socket(address.family, address.socktype | SOCK_CLOEXEC, address.protocol);
    opened_.push_back(socket);
    return socket;
}

void HTTPReadStream::Private::requestStarts(int localPort) {
    usedExistingConnection = socketsOpened_ == 0;
    if (usedExistingConnection && kept_ != nullptr)
        wire_ = kept_->socket();
    for (const curl_socket_t socket : std::exchange(opened_, {})) {
        if (localPortOf(socket) == localPort)
            wire_ = socket;
    }
    besideBody_.reset();
    socketsOpened_ = 0;
    reader_->requestStarts();
}

std::size_t HTTPReadStream::Private::takeHeaderLine(std::string_view line) {
    hasConnection_ = true;
    if (!reader_->takeLine(line)) {
        isGivenUp_ = true;
        return 0;
    }
    if (reader_->head() && !responseHead) {
        responseHead = reader_->head();
        if (const auto length = reader_->announcedLength())
            buffer.expect(*length);
        // A server that has answered early may not want the rest, and libcurl finds out only when
        // it goes on.
        body_.stopWaiting();
    }
    loop_->noteArrival(*this);
    return line.size();
}

std::size_t HTTPReadStream::Private::takeBody(const char* bytes, std::size_t count) {
    if (!reader_->bodyStarts()) {
        isGivenUp_ = true;
        return 0;
    }
    if (!responseHead)
        responseHead = reader_->head();
    // It may have been asked again since the head, and this may be the last that comes.
    body_.stopWaiting();
    loop_->noteArrival(*this);
    buffer.append(bytes, count);
    bodyBytesReceived_ += count;
    if (kept_ != nullptr && reader_->announcedLength() == bodyBytesReceived_)
        lookBehindBody();
    // Left to itself libcurl would go on for as long as more arrives.
    if (buffer.size() >= pauseAt && !isReceivePaused_)
        pause(true, isSendPaused_);
    return count;
}

/// libcurl passes over the extensions of chunks without end, and others starve meanwhile.
bool HTTPReadStream::Private::isFlooded() {
    constexpr unsigned looksBetween = 2;
    constexpr std::uint64_t bound = std::uint64_t{32} << 20;
    // Some servers send each byte in a chunk, and each chunk in a record of TLS of its own.
    constexpr std::uint64_t mostForOneByte = 40;
    if (++looksForFlood_ % looksBetween != 0 || !responseHead || wire_ == CURL_SOCKET_BAD)
        return false;
    const auto received = bytesReceivedOnWire(wire_);
    if (!received)
        return false;
    if (!besideBody_)
        besideBody_ = *received - std::min(*received, bodyBytesReceived_);
    isFlooded_ = *received > *besideBody_ + bodyBytesReceived_ * mostForOneByte + bound;
    return isFlooded_;
}

/// Of several, one within the other, the last is the one that speaks HTTP.
void HTTPReadStream::Private::securesConnection(void* context) {
    tlsEnd_ = watchTLSEnd(static_cast<SSL_CTX*>(context));
    if (kept_ != nullptr)
        kept_->end = tlsEnd_;
}

/// What is left of a TLS record stays where no look at the socket finds it.
void HTTPReadStream::Private::lookBehindBody() {
    curl_tlssessioninfo* session = nullptr;
    const bool isTLS = curl_easy_getinfo(easy_.get(), CURLINFO_TLS_SSL_PTR, &session) == CURLE_OK &&
                       session->backend == CURLSSLBACKEND_OPENSSL && session->internals != nullptr;
    if (isTLS && SSL_has_pending(static_cast<const SSL*>(session->internals)) == 1)
        kept_->spoil();
}

std::size_t HTTPReadStream::Private::giveBody(char* target, std::size_t maximum) {
    hasConnection_ = true;
    const std::size_t given = isScheduled ? body_.read(target, maximum) : CURL_READFUNC_PAUSE;
    isSendPaused_ = given == CURL_READFUNC_PAUSE;
    isGivenUp_ = isGivenUp_ || given == CURL_READFUNC_ABORT;
    return given;
}

void HTTPReadStream::Private::transferEnded(CURLcode result) {
    isEnded_ = true;
    const bool wentInCircles = isGivenUp_ && reader_->refusal().isEmpty() && !body_.error();
    if (result == CURLE_OK || wentInCircles || reader_->isProxyAsking()) {
        reader_->end();
        responseHead = reader_->head();
    }
    error = whatWentWrong(result);
    curl_socket_t left = CURL_SOCKET_BAD;
    if (kept_ != nullptr &&
        curl_easy_getinfo(easy_.get(), CURLINFO_ACTIVESOCKET, &left) == CURLE_OK)
        kept_->keep(left);
    releaseHandle();
    if (isScheduled)
        loop_->markReady(*this);
}

std::optional<Error> HTTPReadStream::Private::whatWentWrong(CURLcode result) const {
    if (body_.error())
        return body_.error();
    if (!reader_->refusal().isEmpty())
        return reader_->isWrongPart() ? wrongPartError(reader_->refusal())
                                      : badResponseError(reader_->refusal());
    if (isFlooded_)
        return badResponseError(u"it sends next to nothing but framing"_s);
    if (isRetryRefused_)
        return brokenReusedConnectionError();
    if (const auto& refusal = reader_->tunnelRefusal())
        return proxyRefusalError(setup.proxy, *refusal);
    if (result == CURLE_OK && !responseHead)
        return badResponseError(u"it ended within its head"_s);
    if (result == CURLE_OK && !isBodyWhole())
        return cutShortError();
    if (result == CURLE_OK && isEndDoubtful())
        return unannouncedEndError();
    // What was given up for no reason of its own stands: a challenge, or a proxy's refusal.
    if (result == CURLE_OK || (responseHead && (isGivenUp_ || responseHead->fromProxy)))
        return std::nullopt;
    const Error failure = errorForResult(resultOf(result));
    const bool isLost = failure.is(networkErrorDomain, networkErrorConnectionLost);
    if (isLost && usedExistingConnection && !reader_->hasSeenAnswer())
        return brokenReusedConnectionError();
    return failure;
}

TransferResult HTTPReadStream::Private::resultOf(CURLcode code) const {
    TransferResult result{code, QString::fromUtf8(reason_.data())};
    long systemError = 0;
    if (curl_easy_getinfo(easy_.get(), CURLINFO_OS_ERRNO, &systemError) == CURLE_OK)
        result.systemError = static_cast<int>(systemError);
    static_cast<void>(
        curl_easy_getinfo(easy_.get(), CURLINFO_SSL_VERIFYRESULT, &result.verification));
    return result;
}

bool HTTPReadStream::Private::hasBody() const {
    const int status = responseHead->statusCode;
    return setup.message.method != "HEAD"_L1 && status != status::noContent &&
           status != status::notModified;
}

/// libcurl forgets the length where a field names no transfer coding.
bool HTTPReadStream::Private::isBodyWhole() const {
    const auto length = reader_->announcedLength();
    return !hasBody() || !length || *length == bodyBytesReceived_;
}

bool HTTPReadStream::Private::isEndDoubtful() const {
    return tlsEnd_ != nullptr && !tlsEnd_->isAnnounced && hasBody() &&
           endsWithConnection(responseHead->headers);
}

bool HTTPReadStream::Private::hasNews() const {
    return !buffer.isEmpty() || (isEnded_ && !isEndReported_);
}

bool HTTPReadStream::Private::settle(bool isQuiet) {
    updatePause();
    if (buffer.hasWholeBlock())
        noteFlow();
    const bool isDue =
        isQuiet || isEnded_ || buffer.hasWholeBlock() || ++deferrals_ > mostDeferrals;
    if (!isDue)
        return false;
    deferrals_ = 0;
    if (isScheduled && hasNews())
        loop_->markReady(*this);
    return true;
}

void HTTPReadStream::Private::updatePause() {
    if (!easy_ || isEnded_ || !hasConnection_)
        return;
    if (loop_->isInsideCurl()) {
        loop_->noteArrival(*this);
        return;
    }
    const bool isFull = buffer.size() > (isReceivePaused_ ? resumeAt : pauseAt);
    const bool pausesReceive = !isScheduled || isFull;
    const bool pausesSend = isSendPaused_ && (!isScheduled || body_.isWaiting());
    if (pausesReceive != isReceivePaused_ || pausesSend != isSendPaused_)
        pause(pausesReceive, pausesSend);
}

void HTTPReadStream::Private::pause(bool receive, bool send) {
    isReceivePaused_ = receive;
    isSendPaused_ = send;
    // With one direction left open libcurl receives once more, into a buffer of its own. Where
    // nothing is to be sent, the other one may as well be closed.
    const bool closesBoth = receive && (send || !body_.exists());
    const int one = receive ? CURLPAUSE_RECV : send ? CURLPAUSE_SEND : CURLPAUSE_CONT;
    curl_easy_pause(easy_.get(), closesBoth ? CURLPAUSE_ALL : one);
}

bool HTTPReadStream::Private::tell(Event event) {
    const std::weak_ptr<char> life = life_;
    // Keeps the client's closure alive though the stream, or its client, may die in it.
    const std::shared_ptr<Client> called = client;
    if (called && *called)
        (*called)(event);
    return !life.expired();
}

void HTTPReadStream::Private::deliver() {
    for (int events = 0; events < mostEventsInTurn; ++events) {
        if (!isOpen_ || !isScheduled || !hasNews())
            return;
        if (buffer.isEmpty()) {
            isEndReported_ = true;
            tell(error ? Event::Error : Event::End);
            return;
        }
        hasRead_ = false;
        isDelivering_ = true;
        if (!tell(Event::BytesAvailable))
            return;
        isDelivering_ = false;
        if (!hasRead_)
            return;  // Nothing more is said until it reads, or until more has come.
        if (sharesTurns || (!buffer.hasWholeBlock() && !isEnded_))
            break;
    }
    if (!isOpen_ || !isScheduled || !hasNews())
        return;
    if (buffer.hasWholeBlock() || isEnded_)
        loop_->markReady(*this);
    else
        loop_->noteArrival(*this);
}

QByteArray HTTPReadStream::Private::read(qsizetype maximum) {
    QByteArray bytes = buffer.take(maximum);
    hasRead_ = true;
    if (!isOpen_)
        return bytes;
    if (isReceivePaused_)
        updatePause();
    if (!isDelivering_ && isScheduled && hasNews())
        loop_->markReady(*this);
    return bytes;
}

void HTTPReadStream::Private::schedule() {
    if (std::exchange(isScheduled, true) || !isOpen_)
        return;
    updatePause();
    if (hasNews())
        loop_->markReady(*this);
}

void HTTPReadStream::Private::unschedule() {
    if (std::exchange(isScheduled, false) && isOpen_)
        updatePause();
}

void HTTPReadStream::Private::resumeBody() {
    body_.stopWaiting();
    if (isOpen_)
        updatePause();
}

std::uint64_t HTTPReadStream::Private::bodyBytesWritten() const {
    curl_off_t sent = 0;
    if (easy_ && curl_easy_getinfo(easy_.get(), CURLINFO_SIZE_UPLOAD_T, &sent) == CURLE_OK)
        return static_cast<std::uint64_t>(sent);
    return bodyBytesWritten_;
}

}  // namespace platform
