#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <memory>

#include "platform/net/http_read_stream.h"

class QIODevice;

namespace http {

class BandwidthAccount;

/// Where a request's body comes from: a file or memory, read through the bandwidth account. Under
/// a limit that is used up it still yields one byte at a time. Its loop's thread only.
class HTTPInputStream final : public platform::HTTPBodySource {
public:
    /// Called before each read under a limit, so that the request can rest its stream.
    using Throttling = std::function<void()>;

    /// Null: the file cannot be read.
    [[nodiscard]] static std::unique_ptr<HTTPInputStream> inputStreamWithFileAtPath(
        const QString& path, BandwidthAccount& bandwidth, Throttling performThrottling);
    [[nodiscard]] static std::unique_ptr<HTTPInputStream> inputStreamWithData(
        const QByteArray& data, BandwidthAccount& bandwidth, Throttling performThrottling);
    ~HTTPInputStream() override;

    Piece read(char* buffer, qsizetype maximum) override;
    bool rewind() override;

private:
    HTTPInputStream(std::unique_ptr<QIODevice> stream, BandwidthAccount& bandwidth,
                    Throttling performThrottling);

    std::unique_ptr<QIODevice> stream_;
    BandwidthAccount& bandwidth_;
    Throttling performThrottling_;
};

}  // namespace http
