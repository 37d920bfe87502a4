#include "http/content/http_data_decompressor.h"

#include <QFileInfo>
#include <algorithm>
#include <limits>
#include <utility>

#include "http/http_request_error.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::Error;

namespace {

constexpr int eitherFraming = 32;
constexpr qsizetype smallestStep = 64;
/// What people compress hardly ever shrinks more; the zeros of a bomb shrink to a thousandth.
constexpr qint64 mostGrowth = 100;

}  // namespace

std::optional<Error> HTTPDataDecompressor::setupStream() {
    if (streamReady_)
        return std::nullopt;
    stream_ = {};
    const int result = inflateInit2(&stream_, MAX_WBITS + eitherFraming);
    if (result != Z_OK)
        return inflateErrorWithCode(result);
    streamReady_ = true;
    return std::nullopt;
}

std::optional<Error> HTTPDataDecompressor::closeStream() {
    if (!std::exchange(streamReady_, false))
        return std::nullopt;
    const int result = inflateEnd(&stream_);
    if (result != Z_OK)
        return inflateErrorWithCode(result);
    return std::nullopt;
}

CodedBytes HTTPDataDecompressor::uncompressBytes(const char* bytes, qsizetype length,
                                                 qsizetype limit) {
    if (length == 0)
        return {};
    if (length > std::numeric_limits<uInt>::max())
        return {{}, inflateErrorWithCode(Z_BUF_ERROR)};
    const qsizetype step = std::max(length / 2, smallestStep);
    QByteArray output(length + step, Qt::Uninitialized);
    qsizetype used = 0;
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes));
    stream_.avail_in = static_cast<uInt>(length);
    int result = Z_OK;
    // Output that just filled the buffer may have left more inside the stream.
    while (result == Z_OK && (stream_.avail_in > 0 || used == output.size())) {
        if (used == output.size()) {
            if (used >= limit)
                return {{}, inflateErrorWithCode(Z_MEM_ERROR)};
            output.resize(used + std::max(step, used / 2));
        }
        stream_.next_out = reinterpret_cast<Bytef*>(output.data() + used);
        stream_.avail_out = static_cast<uInt>(output.size() - used);
        result = inflate(&stream_, Z_NO_FLUSH);
        const qsizetype now = output.size() - static_cast<qsizetype>(stream_.avail_out);
        // No progress with all input taken only says that there was nothing left inside.
        if (result == Z_BUF_ERROR && now == used && stream_.avail_in == 0)
            result = Z_STREAM_END;
        used = now;
    }
    if (result != Z_OK && result != Z_STREAM_END)
        return {{}, inflateErrorWithCode(result)};
    output.truncate(used);
    return {output, std::nullopt};
}

CodedBytes HTTPDataDecompressor::uncompressData(const QByteArray& data, qsizetype limit) {
    return HTTPDataDecompressor().uncompressBytes(data.constData(), data.size(), limit);
}

std::optional<Error> HTTPDataDecompressor::uncompressDataFromFile(const QString& source,
                                                                  const QString& target,
                                                                  qsizetype limit) {
    HTTPDataDecompressor decompressor;
    qsizetype left = std::max(limit, mostGrowth * QFileInfo(source).size());
    const auto code = [&](const char* bytes, qsizetype length, bool) {
        CodedBytes coded = decompressor.uncompressBytes(bytes, length, left);
        left -= coded.data.size();
        return left < 0 ? CodedBytes{{}, inflateErrorWithCode(Z_MEM_ERROR)} : coded;
    };
    return codeFile(source, target,
                    {u"Decompression"_s, code, [&] { return decompressor.closeStream(); }});
}

Error HTTPDataDecompressor::inflateErrorWithCode(int code) {
    return makeRequestError(HTTPRequestErrorCode::Compression,
                            u"Decompression of data failed with code %1"_s.arg(code));
}

}  // namespace http
