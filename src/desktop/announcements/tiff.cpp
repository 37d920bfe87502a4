#include "desktop/announcements/tiff.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>

namespace desktop {
namespace {

constexpr int lzw = 1;
constexpr int largestExtent = 4096;

}  // namespace

std::optional<QByteArray> tiffOfImage(const QImage& image) {
    QBuffer buffer;
    QImageWriter writer(&buffer, "tiff");
    writer.setCompression(lzw);
    return writer.write(image) ? std::optional(buffer.data()) : std::nullopt;
}

QImage imageOfTiff(const QByteArray& tiff) {
    QBuffer buffer;
    buffer.setData(tiff);
    QImageReader reader(&buffer, "tiff");
    const QSize size = reader.size();
    // A few bytes can stand for more pixels than there is memory for.
    if (size.isEmpty() || size.width() > largestExtent || size.height() > largestExtent) {
        return {};
    }
    return reader.read();
}

}  // namespace desktop
