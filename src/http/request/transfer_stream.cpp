#include "http/request/transfer_stream.h"

#include <QStringList>
#include <utility>

#include "http/content/http_input_stream.h"
#include "http/request/request_state.h"
#include "http/shared/bandwidth_account.h"
#include "http/shared/connection_table.h"
#include "platform/net/network_loop.h"

namespace http {

using platform::HTTPReadStream;

namespace {

/// What the transport negotiates makes the whole connection somebody's.
QString circumstancesOf(const platform::ConnectionCredentials& credentials) {
    return QStringList{QString::number(static_cast<int>(credentials.scheme)), credentials.domain,
                       credentials.user}
        .join(u'\t');
}

}  // namespace

TransferStream::TransferStream(RequestState& state, BandwidthAccount& bandwidth,
                               ConnectionTable& connections, platform::Clock& clock)
    : state_(state), bandwidth_(bandwidth), connections_(connections), clock_(clock) {}

TransferStream::~TransferStream() {
    destroy();
}

bool TransferStream::open(platform::NetworkLoop& loop, Setup setup, HTTPReadStream::Client client) {
    destroy();
    connection_ = std::move(setup.connection);
    postBodyReadStream_ = std::move(setup.body);
    readStream_ = std::make_unique<HTTPReadStream>(loop, std::move(setup.message),
                                                   postBodyReadStream_.get(), setup.bodyLength);
    readStream_->setTLSSettings(setup.tls);
    readStream_->setProxy(setup.proxy);
    readStream_->setServerCredentials(setup.serverCredentials);
    readStream_->setProxyCredentials(setup.proxyCredentials);
    readStream_->setConnection(connection_.get());
    readStream_->setClient(std::move(client));
    holds_ = bandwidth_.verdict() == BandwidthAccount::Verdict::Rest
                 ? static_cast<unsigned>(Hold::Throttle)
                 : 0;
    if (holds_ != 0)
        readStream_->unschedule();
    updateSchedule();
    return readStream_->open();
}

void TransferStream::destroy() {
    if (readStreamIsScheduled_)
        connections_.countScheduledStream(-1);
    readStreamIsScheduled_ = false;
    readStream_.reset();
    postBodyReadStream_.reset();
    connection_.reset();
}

void TransferStream::stopReceiving() {
    if (readStream_ != nullptr)
        readStream_->close();
}

void TransferStream::performThrottling() {
    if (readStream_ == nullptr)
        return;
    obey(bandwidth_, Hold::Throttle);
    const auto& own = state_.options.ownBandwidth;
    // The rest that another account wanted: a new one would never end it, for only what comes in
    // gives it a reason to say anything.
    if (std::exchange(ownBandwidth_, own) != own || !own)
        letGo(Hold::OwnThrottle);
    if (own)
        obey(*own, Hold::OwnThrottle);
}

void TransferStream::obey(BandwidthAccount& account, Hold reason) {
    account.measureBandwidthUsage();
    switch (account.verdict()) {
        case BandwidthAccount::Verdict::Run:
            letGo(reason);
            break;
        case BandwidthAccount::Verdict::Rest:
            hold(reason);
            break;
        case BandwidthAccount::Verdict::AsBefore:
            break;
    }
}

void TransferStream::hold(Hold reason) {
    holds_ |= static_cast<unsigned>(reason);
    updateSchedule();
}

void TransferStream::letGo(Hold reason) {
    holds_ &= ~static_cast<unsigned>(reason);
    updateSchedule();
}

void TransferStream::updateSchedule() {
    const bool mayReceive = holds_ == 0;
    if (readStream_ == nullptr || mayReceive == readStreamIsScheduled_)
        return;
    readStreamIsScheduled_ = mayReceive;
    connections_.countScheduledStream(mayReceive ? 1 : -1);
    if (mayReceive) {
        // Rest was no silence of the server's.
        state_.lastActivityTime = clock_.monotonic();
        readStream_->schedule();
    } else {
        readStream_->unschedule();
    }
}

bool TransferStream::hasBytesAvailable() const {
    return readStream_ != nullptr && readStream_->hasBytesAvailable();
}

QByteArray TransferStream::read(qsizetype maximum) {
    if (readStream_ == nullptr)
        return {};
    // Whoever has most in its buffer would take what is left of the second, and the same one again
    // in the next.
    readStream_->setSharesTurns(bandwidth_.isBandwidthThrottled());
    return readStream_->read(maximum);
}

const std::optional<platform::HTTPResponseHead>& TransferStream::responseHead() const {
    static const std::optional<platform::HTTPResponseHead> none;
    return readStream_ != nullptr ? readStream_->responseHead() : none;
}

std::optional<platform::Error> TransferStream::error() const {
    return readStream_ != nullptr ? readStream_->error() : std::nullopt;
}

std::uint64_t TransferStream::bodyBytesWritten() const {
    return readStream_ != nullptr ? readStream_->bodyBytesWritten() : 0;
}

QString connectionCircumstances(const TransferStream::Setup& setup) {
    // An HTTP proxy is told with each request who asks.
    const QString socksUser = setup.proxy.speaksHTTP() ? QString() : setup.proxy.user;
    return QStringList{QString::number(static_cast<int>(setup.proxy.kind)),
                       setup.proxy.host,
                       QString::number(setup.proxy.port),
                       socksUser,
                       circumstancesOf(setup.serverCredentials),
                       circumstancesOf(setup.proxyCredentials),
                       QString::number(setup.tls.validatesCertificate ? 1 : 0),
                       setup.tls.clientCertificatePath,
                       setup.tls.clientKeyPath,
                       setup.tls.authoritiesPath}
        .join(u'\n');
}

}  // namespace http
