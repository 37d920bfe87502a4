// Any bytes as a compressed body: they come to the same at once and in pieces, within the bound;
// and as a plain one, which must survive being compressed.
#include <algorithm>

#include "fuzz_target.h"
#include "http/content/http_data_compressor.h"
#include "http/content/http_data_decompressor.h"

using http::HTTPDataCompressor;
using http::HTTPDataDecompressor;

namespace {

constexpr qsizetype limit = 1 << 20;

/// What comes out of pieces of `size` bytes; less than all where one is an error.
QByteArray inflatedInPieces(const QByteArray& packed, qsizetype size) {
    HTTPDataDecompressor decompressor;
    QByteArray whole;
    for (qsizetype at = 0; at < packed.size(); at += size) {
        const qsizetype length = std::min(size, packed.size() - at);
        const auto piece = decompressor.uncompressBytes(packed.constData() + at, length, limit);
        if (piece.error)
            break;
        whole += piece.data;
    }
    return whole;
}

}  // namespace

void checkInput(const QByteArray& input) {
    const auto whole = HTTPDataDecompressor::uncompressData(input, limit);
    // It grows by half of itself, or of the input, before it is found too large.
    require(whole.data.size() <= 2 * (limit + input.size()));
    if (!whole.error)
        require(inflatedInPieces(input, 7).startsWith(whole.data));
    if (input.isEmpty())
        return;
    const auto packed = HTTPDataCompressor::compressData(input);
    require(!packed.error);
    const auto unpacked = HTTPDataDecompressor::uncompressData(packed.data, limit + input.size());
    require(!unpacked.error && unpacked.data == input);
    require(inflatedInPieces(packed.data, 5) == input);
}
