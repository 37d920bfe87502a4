#pragma once

#include <QImage>

#include "app/status/application_image.h"

namespace desktop {

/// Draws what the application's icon is to show: how far all is, how many downloads run and wait,
/// and what will happen at the end. GUI thread.
class IconPainter {
public:
    /// `icon` is the program's own, in the size to be drawn in; `flat` the same without colour, for
    /// what is not done yet.
    IconPainter(QImage icon, const QImage& flat);

    [[nodiscard]] QImage paint(const app::ApplicationImage& image) const;

private:
    [[nodiscard]] QImage base(const app::ApplicationImage& image) const;
    void drawCount(QPainter& painter, qint64 count, bool atTop) const;

    QImage icon_;
    QImage flat_;
};

}  // namespace desktop
