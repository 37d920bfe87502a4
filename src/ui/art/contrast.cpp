#include "ui/art/contrast.h"

#include <algorithm>
#include <cmath>

namespace ui {
namespace {

double linear(double component) {
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

}  // namespace

double contrast(const QColor& a, const QColor& b) {
    constexpr double flare = 0.05;
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + flare) / (darker + flare);
}

QColor blended(const QColor& a, const QColor& b, double share) {
    const auto mix = [share](float x, float y) {
        return static_cast<float>(x * (1 - share) + y * share);
    };
    return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()),
                            mix(a.blueF(), b.blueF()));
}

QColor legible(const QColor& color, const QColor& strongest,
               std::initializer_list<QColor> grounds) {
    constexpr int steps = 16;
    for (int step = 0; step < steps; ++step) {
        const QColor moved = blended(color, strongest, double(step) / steps);
        if (std::all_of(grounds.begin(), grounds.end(), [&](const QColor& ground) {
                return contrast(moved, ground) >= legibleContrast;
            }))
            return moved;
    }
    return strongest;
}

}  // namespace ui
