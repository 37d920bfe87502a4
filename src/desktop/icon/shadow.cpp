#include "desktop/icon/shadow.h"

#include <QPainter>

namespace desktop {
namespace {

/// The mean over `radius` pixels to both sides along rows; transposed, so that doing it twice blurs
/// both ways.
QImage blurredAndTransposed(const QImage& alpha, int radius) {
    QImage result(alpha.height(), alpha.width(), QImage::Format_Alpha8);
    const int window = 2 * radius + 1;
    for (int y = 0; y < alpha.height(); ++y) {
        const uchar* line = alpha.constScanLine(y);
        const auto at = [&](int x) { return x < 0 || x >= alpha.width() ? 0 : int{line[x]}; };
        int sum = 0;
        for (int x = -radius; x < radius; ++x) {
            sum += at(x);
        }
        for (int x = 0; x < alpha.width(); ++x) {
            sum += at(x + radius);
            result.scanLine(x)[y] = static_cast<uchar>(sum / window);
            sum -= at(x - radius);
        }
    }
    return result;
}

}  // namespace

QImage shadow(const QImage& image, const Shadow& shadow) {
    QImage moved(image.size(), QImage::Format_Alpha8);
    moved.fill(0);
    const QImage alpha = image.convertToFormat(QImage::Format_Alpha8);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QPoint from = QPoint(x, y) - shadow.offset;
            moved.scanLine(y)[x] =
                alpha.rect().contains(from) ? alpha.constScanLine(from.y())[from.x()] : uchar{0};
        }
    }
    const QImage blurred =
        blurredAndTransposed(blurredAndTransposed(moved, shadow.blur), shadow.blur);
    QImage result(image.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(QColor::fromRgbF(0, 0, 0, static_cast<float>(shadow.opacity)));
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, blurred);
    return result;
}

}  // namespace desktop
