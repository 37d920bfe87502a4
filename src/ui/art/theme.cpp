#include "ui/art/theme.h"

#include "ui/art/contrast.h"

namespace ui {

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Base).lightnessF() < 0.5F;
}

QPalette darkPalette() {
    QPalette palette;
    const auto set = [&palette](QPalette::ColorRole role, QRgb color, QRgb disabled) {
        palette.setColor(role, QColor(color));
        palette.setColor(QPalette::Disabled, role, QColor(disabled));
    };
    set(QPalette::Window, 0x2d2f33, 0x2d2f33);
    set(QPalette::WindowText, 0xeceff1, 0x80858b);
    set(QPalette::Base, 0x1f2124, 0x26282b);
    set(QPalette::AlternateBase, 0x26282b, 0x26282b);
    set(QPalette::Text, 0xeceff1, 0x80858b);
    set(QPalette::PlaceholderText, 0x8f959b, 0x6d7278);
    set(QPalette::Button, 0x3a3d42, 0x34363a);
    set(QPalette::ButtonText, 0xeceff1, 0x80858b);
    set(QPalette::BrightText, 0xffffff, 0xffffff);
    set(QPalette::ToolTipBase, 0x3a3d42, 0x3a3d42);
    set(QPalette::ToolTipText, 0xeceff1, 0xeceff1);
    set(QPalette::Highlight, 0x2870b8, 0x4a4e54);
    set(QPalette::HighlightedText, 0xffffff, 0xc0c4c8);
    set(QPalette::Link, 0x6db3f2, 0x6d7278);
    set(QPalette::LinkVisited, 0xb48ee8, 0x6d7278);
    set(QPalette::Light, 0x4d5157, 0x4d5157);
    set(QPalette::Midlight, 0x43464b, 0x43464b);
    set(QPalette::Mid, 0x232528, 0x232528);
    set(QPalette::Dark, 0x1a1b1e, 0x1a1b1e);
    set(QPalette::Shadow, 0x0c0d0e, 0x0c0d0e);
    return palette;
}

QColor separatorColor(const QPalette& palette) {
    return blended(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.12);
}

QColor noteColor(const QPalette& palette) {
    return blended(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.6);
}

QFont noteFont(QFont around) {
    constexpr double share = 0.9;
    if (around.pointSizeF() > 0) {
        around.setPointSizeF(around.pointSizeF() * share);
    } else {
        around.setPixelSize(static_cast<int>(around.pixelSize() * share));
    }
    return around;
}

QColor outlineColor(const QPalette& palette) {
    return blended(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.22);
}

}  // namespace ui
