#pragma once

#include <QColor>
#include <QPalette>

namespace ui {

/// "Progress Bar Style".
enum class ProgressBarStyle { LivelyBackground, SubtleBackground, Pill, DividerLine };

struct ProgressColors {
    QColor top, bottom;
};

/// What a row is drawn in. All texts can be read on all that they may stand on, also where the
/// desktop's own colours of selected rows are too close to each other.
struct RowColors {
    QColor background;
    QColor name, note;
    /// Of texts that say why it does not run: it can go on, and it cannot.
    QColor interrupted, failed;
    /// Progress that has stopped is grey.
    ProgressColors moving, stopped;
};

[[nodiscard]] RowColors rowColors(const QPalette& palette, ProgressBarStyle style, bool isSelected,
                                  bool isActiveWindow);

}  // namespace ui
