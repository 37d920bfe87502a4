#include "http/content/http_input_stream.h"

#include <QBuffer>
#include <QFile>
#include <algorithm>

#include "http/shared/bandwidth_account.h"

namespace http {

HTTPInputStream::HTTPInputStream(std::unique_ptr<QIODevice> stream, BandwidthAccount& bandwidth,
                                 Throttling performThrottling)
    : _stream(std::move(stream)),
      _bandwidth(bandwidth),
      _performThrottling(std::move(performThrottling)) {}

HTTPInputStream::~HTTPInputStream() = default;

std::unique_ptr<HTTPInputStream> HTTPInputStream::inputStreamWithFileAtPath(
    const QString& path, BandwidthAccount& bandwidth, Throttling performThrottling) {
    auto file = std::make_unique<QFile>(path);
    if (!file->open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return nullptr;
    return std::unique_ptr<HTTPInputStream>(
        new HTTPInputStream(std::move(file), bandwidth, std::move(performThrottling)));
}

std::unique_ptr<HTTPInputStream> HTTPInputStream::inputStreamWithData(
    const QByteArray& data, BandwidthAccount& bandwidth, Throttling performThrottling) {
    auto buffer = std::make_unique<QBuffer>();
    buffer->setData(data);
    buffer->open(QIODevice::ReadOnly);
    return std::unique_ptr<HTTPInputStream>(
        new HTTPInputStream(std::move(buffer), bandwidth, std::move(performThrottling)));
}

platform::HTTPBodySource::Piece HTTPInputStream::read(char* buffer, qsizetype maximum) {
    if (_bandwidth.isBandwidthThrottled()) {
        const std::uint64_t allowance =
            std::max<std::uint64_t>(1, _bandwidth.maxUploadReadLength());
        if (allowance < static_cast<std::uint64_t>(maximum))
            maximum = static_cast<qsizetype>(allowance);
        _performThrottling();
    }
    const qint64 count = _stream->read(buffer, maximum);
    if (count < 0)
        return {State::Failed, 0};
    if (count == 0)
        return {State::End, 0};
    _bandwidth.incrementBandwidthUsedInLastSecond(static_cast<std::uint64_t>(count));
    return {State::Data, count};
}

bool HTTPInputStream::rewind() {
    return _stream->seek(0);
}

}  // namespace http
