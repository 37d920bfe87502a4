#pragma once

#include <zlib.h>

#include "http/content/coded_bytes.h"

namespace http {

/// Inflates gzip or zlib framing, whichever comes (RFC 1952, RFC 1950); what follows the end of
/// the stream is ignored. Errors have code 11. One thread at a time.
class HTTPDataDecompressor {
public:
    /// Sets its stream up.
    HTTPDataDecompressor() { static_cast<void>(setupStream()); }
    ~HTTPDataDecompressor() { closeStream(); }
    HTTPDataDecompressor(const HTTPDataDecompressor&) = delete;
    HTTPDataDecompressor& operator=(const HTTPDataDecompressor&) = delete;

    /// What grows past this in one piece is an attack.
    static constexpr qsizetype defaultLimit = qsizetype{256} << 20;

    /// Nothing: ready, as it may have been before.
    [[nodiscard]] std::optional<platform::Error> setupStream();
    std::optional<platform::Error> closeStream();
    /// The output of one chunk; an empty chunk has none. An error also if it grows far past
    /// `limit` bytes.
    [[nodiscard]] CodedBytes uncompressBytes(const char* bytes, qsizetype length,
                                             qsizetype limit = defaultLimit);

    [[nodiscard]] static CodedBytes uncompressData(const QByteArray& data,
                                                   qsizetype limit = defaultLimit);
    /// Nothing: done. An error also if the target grows past `limit` bytes as well as past a
    /// hundred times the source.
    [[nodiscard]] static std::optional<platform::Error> uncompressDataFromFile(
        const QString& source, const QString& target, qsizetype limit = defaultLimit);
    [[nodiscard]] static platform::Error inflateErrorWithCode(int code);

private:
    bool streamReady_ = false;
    z_stream stream_{};
};

}  // namespace http
