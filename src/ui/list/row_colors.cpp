#include "ui/list/row_colors.h"

#include "ui/art/contrast.h"
#include "ui/art/theme.h"

namespace ui {
namespace {

/// The colour at the other end from `ink`.
QColor opposite(const QColor& ink) {
    return contrast(ink, Qt::black) > contrast(ink, Qt::white) ? Qt::black : Qt::white;
}

bool isBehindTexts(ProgressBarStyle style) {
    return style == ProgressBarStyle::LivelyBackground ||
           style == ProgressBarStyle::SubtleBackground;
}

struct Shares {
    double top, bottom;
};

Shares sharesOfInk(ProgressBarStyle style, bool active) {
    if (style == ProgressBarStyle::LivelyBackground)
        return active ? Shares{0.22, 0.42} : Shares{0.10, 0.18};
    return active ? Shares{0.10, 0.18} : Shares{0.06, 0.10};
}

/// `ink`: what the bar is drawn with. Of a selected row it leads away from the texts.
ProgressColors fractionGradient(const RowColors& row, const QColor& ink, ProgressBarStyle style,
                                bool active) {
    if (!isBehindTexts(style)) {
        const QColor plain = active ? ink : blended(row.background, ink, 0.45);
        return {plain, plain};
    }
    Shares shares = sharesOfInk(style, active);
    while (shares.bottom > 0.05 &&
           contrast(row.name, blended(row.background, ink, shares.bottom)) < legibleContrast)
        shares = {shares.top * 0.9, shares.bottom * 0.9};
    return {blended(row.background, ink, shares.top), blended(row.background, ink, shares.bottom)};
}

}  // namespace

RowColors rowColors(const QPalette& palette, ProgressBarStyle style, bool isSelected,
                    bool isActiveWindow) {
    const auto group = isActiveWindow ? QPalette::Active : QPalette::Inactive;
    RowColors row;
    row.name = palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    row.background = palette.color(group, isSelected ? QPalette::Highlight : QPalette::Base);
    if (isSelected)
        row.background = legible(row.background, opposite(row.name), {row.name});
    const bool isBehind = isBehindTexts(style);
    const QColor accent = palette.color(QPalette::Highlight);
    QColor ink = accent, stoppedInk = row.name;
    if (isSelected)
        ink = stoppedInk = isBehind ? opposite(row.name) : row.name;
    row.moving = fractionGradient(row, isActiveWindow ? ink : stoppedInk, style, isActiveWindow);
    row.stopped = fractionGradient(row, stoppedInk, style, false);

    const QColor ground = isBehind ? row.moving.bottom : row.background;
    const QColor stoppedGround = isBehind ? row.stopped.bottom : row.background;
    const auto read = [&](const QColor& color) {
        return legible(color, row.name, {row.background, ground, stoppedGround});
    };
    const bool isOnDark = contrast(row.background, Qt::white) > contrast(row.background, Qt::black);
    row.note = read(blended(row.background, row.name, isSelected ? 0.85 : 0.68));
    row.interrupted = read(QColor(isOnDark ? 0xf2b44cU : 0x946000U));
    row.failed = read(QColor(isOnDark ? 0xff8a80U : 0xc62828U));
    return row;
}

}  // namespace ui
