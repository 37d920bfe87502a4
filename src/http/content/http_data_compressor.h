#pragma once

#include <zlib.h>

#include "http/content/coded_bytes.h"

namespace http {

/// Deflates into gzip framing (RFC 1952). Errors have code 11. One thread at a time.
class HTTPDataCompressor {
public:
    /// Sets its stream up.
    HTTPDataCompressor() { static_cast<void>(setupStream()); }
    ~HTTPDataCompressor() { closeStream(); }
    HTTPDataCompressor(const HTTPDataCompressor&) = delete;
    HTTPDataCompressor& operator=(const HTTPDataCompressor&) = delete;

    /// Nothing: ready, as it may have been before.
    [[nodiscard]] std::optional<platform::Error> setupStream();
    /// An error also for a stream that was begun and not finished.
    std::optional<platform::Error> closeStream();
    /// The output of one chunk; an empty chunk has none. `shouldFinish`: it is the last.
    [[nodiscard]] CodedBytes compressBytes(const char* bytes, qsizetype length, bool shouldFinish);

    [[nodiscard]] static CodedBytes compressData(const QByteArray& data);
    /// Nothing: done. A source that ends on a whole chunk of 262,144 bytes leaves the stream
    /// unfinished, which is an error.
    [[nodiscard]] static std::optional<platform::Error> compressDataFromFile(const QString& source,
                                                                             const QString& target);
    [[nodiscard]] static platform::Error deflateErrorWithCode(int code);

private:
    bool streamReady_ = false;
    z_stream stream_{};
};

}  // namespace http
