#pragma once

#include <QColor>
#include <QImage>
#include <QString>
#include <optional>

class QPainter;

namespace desktop {

/// A rounded label with a shadow, in a size to be scaled down from.
struct Badge {
    QString text;
    QColor textColor = Qt::white;
    QColor fillColor = QColor::fromRgbF(1, 0, 0, 0.9F);
    /// Nothing: it has no outline.
    std::optional<QColor> outlineColor = std::nullopt;
};

/// A long text is cut in its middle. GUI thread, as fonts are needed.
[[nodiscard]] QImage badgeImage(const Badge& badge);

/// In a right corner of a picture of this size, in proportion to it.
void drawBadge(QPainter& painter, const QSize& canvas, const QImage& badge, bool atTop);

}  // namespace desktop
