#include "desktop/icon/badge.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "desktop/icon/shadow.h"

namespace desktop {
namespace {

constexpr qreal padding = 22;
constexpr qreal emptyExtent = 30;
constexpr qreal widening = 16;
constexpr qreal mostAspectRatio = 2.7;
constexpr qreal inset = 3;
constexpr int fontSize = 40;

QFont badgeFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(fontSize);
    return font;
}

QSizeF badgeSize(const QString& text, const QFontMetricsF& metrics) {
    const qreal width = text.isEmpty() ? emptyExtent : metrics.horizontalAdvance(text) + padding;
    const qreal height = text.isEmpty() ? emptyExtent : metrics.height() + padding;
    return height > width ? QSizeF(height, height)
                          : QSizeF(std::min(width + widening, mostAspectRatio * height), height);
}

}  // namespace

QImage badgeImage(const Badge& badge) {
    const QFont font = badgeFont();
    const QFontMetricsF metrics(font);
    const QSizeF size = badgeSize(badge.text, metrics);
    QImage image(size.toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const QRectF shape = QRectF(image.rect()).adjusted(inset, inset, -inset, -inset);
    QImage pill = image;
    {
        QPainter painter(&pill);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(badge.fillColor);
        painter.setPen(Qt::NoPen);
        if (badge.outlineColor) {
            const qreal outline = std::max(1.0, std::floor(size.height() * 0.05));
            painter.setPen(QPen(*badge.outlineColor, outline));
        }
        painter.drawRoundedRect(shape, shape.height() / 2, shape.height() / 2);
    }
    QPainter painter(&image);
    painter.drawImage(0, 0, shadow(pill, {{0, 1}, 3, 0.4}));
    painter.drawImage(0, 0, pill);
    painter.setFont(font);
    painter.setPen(badge.textColor);
    const QRectF textArea = QRectF(image.rect()).adjusted(padding / 2, 0, -padding / 2, 0);
    painter.drawText(textArea, Qt::AlignCenter,
                     metrics.elidedText(badge.text, Qt::ElideMiddle, std::ceil(textArea.width())));
    return image;
}

void drawBadge(QPainter& painter, const QSize& canvas, const QImage& badge, bool atTop) {
    const qreal height = canvas.height() / 2.7;
    const qreal width = height * badge.width() / badge.height();
    painter.drawImage(
        QRectF(canvas.width() - width, atTop ? 0 : canvas.height() - height, width, height), badge);
}

}  // namespace desktop
