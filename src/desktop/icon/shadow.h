#pragma once

#include <QImage>
#include <QPoint>

namespace desktop {

/// How a shadow falls.
struct Shadow {
    QPoint offset;  ///< In pixels, down and to the right.
    int blur = 0;   ///< Radius in pixels.
    double opacity = 1.0;
};

/// The black shadow that what is drawn on `image` throws, in an image of the same size.
[[nodiscard]] QImage shadow(const QImage& image, const Shadow& shadow);

}  // namespace desktop
