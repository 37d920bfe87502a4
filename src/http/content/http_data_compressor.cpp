#include "http/content/http_data_compressor.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "http/http_request_error.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::Error;

namespace {

constexpr int gzipFraming = 16;
constexpr int memoryLevel = 8;
/// Enough for the frame of a tiny chunk.
constexpr qsizetype smallestGrowth = 64;

}  // namespace

std::optional<Error> HTTPDataCompressor::setupStream() {
    if (streamReady_)
        return std::nullopt;
    stream_ = {};
    const int result = deflateInit2(&stream_, Z_DEFAULT_COMPRESSION, Z_DEFLATED,
                                    MAX_WBITS + gzipFraming, memoryLevel, Z_DEFAULT_STRATEGY);
    if (result != Z_OK)
        return deflateErrorWithCode(result);
    streamReady_ = true;
    return std::nullopt;
}

std::optional<Error> HTTPDataCompressor::closeStream() {
    if (!std::exchange(streamReady_, false))
        return std::nullopt;
    const int result = deflateEnd(&stream_);
    if (result != Z_OK)
        return deflateErrorWithCode(result);
    return std::nullopt;
}

CodedBytes HTTPDataCompressor::compressBytes(const char* bytes, qsizetype length,
                                             bool shouldFinish) {
    if (length == 0)
        return {};
    if (length > std::numeric_limits<uInt>::max())
        return {{}, deflateErrorWithCode(Z_BUF_ERROR)};
    const qsizetype step = std::max(length / 2, smallestGrowth);
    QByteArray output(step, Qt::Uninitialized);
    qsizetype used = 0;
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes));
    stream_.avail_in = static_cast<uInt>(length);
    while (true) {
        if (used == output.size())
            output.resize(used + step);
        stream_.next_out = reinterpret_cast<Bytef*>(output.data() + used);
        stream_.avail_out = static_cast<uInt>(output.size() - used);
        const int result = deflate(&stream_, shouldFinish ? Z_FINISH : Z_NO_FLUSH);
        used = output.size() - static_cast<qsizetype>(stream_.avail_out);
        if (result == Z_STREAM_END || (result == Z_OK && stream_.avail_out > 0))
            break;
        if (result != Z_OK)
            return {{}, deflateErrorWithCode(result)};
    }
    output.truncate(used);
    return {output, std::nullopt};
}

CodedBytes HTTPDataCompressor::compressData(const QByteArray& data) {
    return HTTPDataCompressor().compressBytes(data.constData(), data.size(), true);
}

std::optional<Error> HTTPDataCompressor::compressDataFromFile(const QString& source,
                                                              const QString& target) {
    HTTPDataCompressor compressor;
    return codeFile(source, target,
                    {u"Compression"_s,
                     [&](const char* bytes, qsizetype length, bool isLast) {
                         return compressor.compressBytes(bytes, length, isLast);
                     },
                     [&] { return compressor.closeStream(); }});
}

Error HTTPDataCompressor::deflateErrorWithCode(int code) {
    return makeRequestError(HTTPRequestErrorCode::Compression,
                            u"Compression of data failed with code %1"_s.arg(code));
}

}  // namespace http
