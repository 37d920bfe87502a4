#pragma once

#include <QRectF>
#include <QString>

class QPainter;

namespace ui {

/// Paints the icon of files with an extension: the desktop theme's, or a page of our own that
/// bears the extension in the colour of its kind.
void paintFileTypeIcon(QPainter& painter, const QRectF& frame, const QString& extension);

}  // namespace ui
