#include "ui/art/theme.h"

#include "ui/list/download_cell.h"

namespace ui {
namespace {

QColor blended(const QColor& a, const QColor& b, double share) {
    const auto mix = [share](float x, float y) {
        return static_cast<float>(x * (1 - share) + y * share);
    };
    return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()),
                            mix(a.blueF(), b.blueF()));
}

}  // namespace

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Base).lightnessF() < 0.5F;
}

QColor separatorColor(const QPalette& palette) {
    return blended(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.12);
}

QColor outlineColor(const QPalette& palette) {
    return blended(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.22);
}

ProgressColors progressColors(const QPalette& palette, ProgressBarStyle style, bool isSelected,
                              bool active) {
    const QColor base = palette.color(isSelected ? QPalette::Highlight : QPalette::Base);
    const QColor ink =
        active ? palette.color(isSelected ? QPalette::HighlightedText : QPalette::Highlight)
               : palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
    switch (style) {
        case ProgressBarStyle::LivelyBackground:
            return {blended(base, ink, active ? 0.22 : 0.10),
                    blended(base, ink, active ? 0.42 : 0.18)};
        case ProgressBarStyle::SubtleBackground:
            return {blended(base, ink, active ? 0.10 : 0.06),
                    blended(base, ink, active ? 0.18 : 0.10)};
        case ProgressBarStyle::Pill:
        case ProgressBarStyle::DividerLine:
            break;
    }
    const QColor plain = active ? ink : blended(base, ink, 0.45);
    return {plain, plain};
}

}  // namespace ui
