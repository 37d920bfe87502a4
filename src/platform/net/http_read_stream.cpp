#include "platform/net/http_read_stream.h"

#include "platform/net/http_read_stream_private.h"

namespace platform {

HTTPReadStream::HTTPReadStream(NetworkLoop& loop, HTTPRequestMessage message, HTTPBodySource* body,
                               std::uint64_t bodyLength)
    : private_(std::make_unique<Private>(loop, std::move(message), body, bodyLength)) {}

HTTPReadStream::~HTTPReadStream() = default;

void HTTPReadStream::setTLSSettings(const TLSSettings& settings) {
    private_->setup.tls = settings;
}

void HTTPReadStream::setProxy(const HTTPProxy& proxy) {
    private_->setup.proxy = proxy;
}

void HTTPReadStream::setServerCredentials(const ConnectionCredentials& credentials) {
    private_->setup.serverCredentials = credentials;
}

void HTTPReadStream::setProxyCredentials(const ConnectionCredentials& credentials) {
    private_->setup.proxyCredentials = credentials;
}

void HTTPReadStream::setConnection(HTTPConnectionIdentity* identity) {
    private_->identity = identity;
}

void HTTPReadStream::setClient(Client client) {
    private_->client = std::make_shared<Client>(std::move(client));
}

bool HTTPReadStream::open() {
    return private_->open();
}

void HTTPReadStream::close() {
    private_->close();
}

void HTTPReadStream::schedule() {
    private_->schedule();
}

void HTTPReadStream::unschedule() {
    private_->unschedule();
}

bool HTTPReadStream::isScheduled() const {
    return private_->isScheduled;
}

bool HTTPReadStream::hasBytesAvailable() const {
    return !private_->buffer.isEmpty();
}

QByteArray HTTPReadStream::read(qsizetype maximum) {
    return private_->read(maximum);
}

void HTTPReadStream::setSharesTurns(bool shares) {
    private_->sharesTurns = shares;
}

const std::optional<HTTPResponseHead>& HTTPReadStream::responseHead() const {
    return private_->responseHead;
}

const std::optional<Error>& HTTPReadStream::error() const {
    return private_->error;
}

std::uint64_t HTTPReadStream::bodyBytesWritten() const {
    return private_->bodyBytesWritten();
}

void HTTPReadStream::resumeBody() {
    private_->resumeBody();
}

bool HTTPReadStream::usedExistingConnection() const {
    return private_->usedExistingConnection;
}

}  // namespace platform
