#include "desktop/icon/icon_painter.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <cmath>

#include "desktop/icon/badge.h"
#include "desktop/icon/shadow.h"

namespace desktop {
namespace {

using Overlay = app::ApplicationImage::Overlay;

constexpr qreal fadedOpacity = 0.5;

QImage blank(const QSize& size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QImage faded(const QImage& source) {
    QImage image = blank(source.size());
    QPainter painter(&image);
    painter.setOpacity(fadedOpacity);
    painter.drawImage(0, 0, source);
    return image;
}

/// The sign for what will happen when all is done.
void drawOverlay(QPainter& painter, const QSize& size, Overlay overlay) {
    const bool isSleep = overlay == Overlay::SleepWhenDone;
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setBold(true);
    font.setPixelSize(static_cast<int>(size.height() / (isSleep ? 1.6 : 2.5)));
    QImage layer = blank(size);
    {
        QPainter text(&layer);
        text.setFont(font);
        text.setPen(Qt::white);
        const int height = font.pixelSize() + 5;
        text.drawText(QRect(0, size.height() - height, size.width(), height), Qt::AlignCenter,
                      QString(QChar(isSleep ? u'\u2615' : u'\u233d')));
    }
    painter.drawImage(0, 0, shadow(layer, {{0, 1}, 3, 1.0}));
    painter.drawImage(0, 0, layer);
}

}  // namespace

IconPainter::IconPainter(QImage icon, const QImage& flat)
    : icon_(std::move(icon)),
      flat_(flat.scaled(icon_.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)) {}

QImage IconPainter::paint(const app::ApplicationImage& image) const {
    if (image.isPlain()) {
        return icon_;
    }
    QImage drawn = base(image);
    QPainter painter(&drawn);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (image.overlay != Overlay::None) {
        drawOverlay(painter, drawn.size(), image.overlay);
    }
    drawCount(painter, image.upperCount, true);
    drawCount(painter, image.lowerCount, false);
    return drawn;
}

/// The icon fills with colour from below; a part of it stays grey at the start and at the end, so
/// that both can be told from a program at rest.
QImage IconPainter::base(const app::ApplicationImage& image) const {
    QImage drawn = blank(icon_.size());
    QPainter painter(&drawn);
    painter.drawImage(0, 0, icon_);
    if (image.fraction >= 0) {
        const int grey =
            static_cast<int>(std::ceil(drawn.height() * (0.75 - 0.5 * image.fraction)));
        const QRect strip(0, 0, drawn.width(), grey);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(strip, flat_, strip);
    }
    painter.end();
    return image.overlay == Overlay::None ? drawn : faded(drawn);
}

void IconPainter::drawCount(QPainter& painter, qint64 count, bool atTop) const {
    if (count <= 0) {
        return;
    }
    const QColor text = QGuiApplication::palette().color(QPalette::Active, QPalette::Highlight);
    const QImage badge =
        badgeImage({QString::number(count), text, QColor::fromRgbF(1, 1, 1, 0.9F), std::nullopt});
    drawBadge(painter, icon_.size(), badge, atTop);
}

}  // namespace desktop
