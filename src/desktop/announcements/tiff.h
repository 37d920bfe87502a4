#pragma once

#include <QByteArray>
#include <QImage>
#include <optional>

namespace desktop {

/// As TIFF with LZW. Nothing: this system has no writer for it.
[[nodiscard]] std::optional<QByteArray> tiffOfImage(const QImage& image);
/// Null: it is no image, or one larger than any icon.
[[nodiscard]] QImage imageOfTiff(const QByteArray& tiff);

}  // namespace desktop
