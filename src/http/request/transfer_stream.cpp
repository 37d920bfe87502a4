#include "http/request/transfer_stream.h"

#include <QStringList>

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
    : _state(state), _bandwidth(bandwidth), _connections(connections), _clock(clock) {}

TransferStream::~TransferStream() {
    destroy();
}

bool TransferStream::open(platform::NetworkLoop& loop, Setup setup, HTTPReadStream::Client client) {
    destroy();
    _connection = std::move(setup.connection);
    _postBodyReadStream = std::move(setup.body);
    _readStream = std::make_unique<HTTPReadStream>(loop, std::move(setup.message),
                                                   _postBodyReadStream.get(), setup.bodyLength);
    _readStream->setTLSSettings(setup.tls);
    _readStream->setProxy(setup.proxy);
    _readStream->setServerCredentials(setup.serverCredentials);
    _readStream->setProxyCredentials(setup.proxyCredentials);
    _readStream->setConnection(_connection.get());
    _readStream->setClient(std::move(client));
    _holds = _bandwidth.verdict() == BandwidthAccount::Verdict::Rest
                 ? static_cast<unsigned>(Hold::Throttle)
                 : 0;
    if (_holds != 0)
        _readStream->unschedule();
    updateSchedule();
    return _readStream->open();
}

void TransferStream::destroy() {
    if (_readStreamIsScheduled)
        _connections.countScheduledStream(-1);
    _readStreamIsScheduled = false;
    _readStream.reset();
    _postBodyReadStream.reset();
    _connection.reset();
}

void TransferStream::stopReceiving() {
    if (_readStream != nullptr)
        _readStream->close();
}

void TransferStream::performThrottling() {
    if (_readStream == nullptr)
        return;
    _bandwidth.measureBandwidthUsage();
    switch (_bandwidth.verdict()) {
        case BandwidthAccount::Verdict::Run:
            letGo(Hold::Throttle);
            break;
        case BandwidthAccount::Verdict::Rest:
            hold(Hold::Throttle);
            break;
        case BandwidthAccount::Verdict::AsBefore:
            break;
    }
}

void TransferStream::hold(Hold reason) {
    _holds |= static_cast<unsigned>(reason);
    updateSchedule();
}

void TransferStream::letGo(Hold reason) {
    _holds &= ~static_cast<unsigned>(reason);
    updateSchedule();
}

void TransferStream::updateSchedule() {
    const bool mayReceive = _holds == 0;
    if (_readStream == nullptr || mayReceive == _readStreamIsScheduled)
        return;
    _readStreamIsScheduled = mayReceive;
    _connections.countScheduledStream(mayReceive ? 1 : -1);
    if (mayReceive) {
        // Rest was no silence of the server's.
        _state.lastActivityTime = _clock.monotonic();
        _readStream->schedule();
    } else {
        _readStream->unschedule();
    }
}

bool TransferStream::hasBytesAvailable() const {
    return _readStream != nullptr && _readStream->hasBytesAvailable();
}

QByteArray TransferStream::read(qsizetype maximum) {
    return _readStream != nullptr ? _readStream->read(maximum) : QByteArray();
}

const std::optional<platform::HTTPResponseHead>& TransferStream::responseHead() const {
    static const std::optional<platform::HTTPResponseHead> none;
    return _readStream != nullptr ? _readStream->responseHead() : none;
}

std::optional<platform::Error> TransferStream::error() const {
    return _readStream != nullptr ? _readStream->error() : std::nullopt;
}

std::uint64_t TransferStream::bodyBytesWritten() const {
    return _readStream != nullptr ? _readStream->bodyBytesWritten() : 0;
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
