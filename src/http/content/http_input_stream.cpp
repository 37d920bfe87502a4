#include "http/content/http_input_stream.h"

#include <QBuffer>
#include <QFile>
#include <algorithm>

#include "http/shared/bandwidth_account.h"

namespace http {

HTTPInputStream::HTTPInputStream(std::unique_ptr<QIODevice> stream, BandwidthAccount& bandwidth,
                                 Throttling performThrottling)
    : stream_(std::move(stream)),
      bandwidth_(bandwidth),
      performThrottling_(std::move(performThrottling)) {}

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
    if (bandwidth_.isBandwidthThrottled()) {
        const std::uint64_t allowance =
            std::max<std::uint64_t>(1, bandwidth_.maxUploadReadLength());
        if (allowance < static_cast<std::uint64_t>(maximum))
            maximum = static_cast<qsizetype>(allowance);
        performThrottling_();
    }
    const qint64 count = stream_->read(buffer, maximum);
    if (count < 0)
        return {State::Failed, 0};
    if (count == 0)
        return {State::End, 0};
    bandwidth_.incrementBandwidthUsedInLastSecond(static_cast<std::uint64_t>(count));
    return {State::Data, count};
}

bool HTTPInputStream::rewind() {
    return stream_->seek(0);
}

}  // namespace http
