#pragma once

#include <QFont>
#include <QRect>

namespace ui {

/// Where the parts of a row lie, in device-independent pixels. Mirrored for right-to-left layouts.
class RowGeometry {
public:
    /// `font` is the interface's; a larger one makes higher rows.
    explicit RowGeometry(const QFont& font);

    [[nodiscard]] int rowHeight() const { return rowHeight_; }
    [[nodiscard]] const QFont& nameFont() const { return nameFont_; }
    [[nodiscard]] const QFont& statusFont() const { return statusFont_; }

    [[nodiscard]] QRect imageFrameForCellFrame(const QRect& row,
                                               Qt::LayoutDirection direction) const;
    /// `buttons`: how many of the two action buttons are shown.
    [[nodiscard]] QRect textFrameForCellFrame(const QRect& row, int buttons,
                                              Qt::LayoutDirection direction) const;
    [[nodiscard]] QRect statusFrameForCellFrame(const QRect& row, int buttons,
                                                Qt::LayoutDirection direction) const;
    /// Index 1 or 2 from the left of the pair; 0 is the place beside them.
    [[nodiscard]] QRect frameForActionButtonWithIndex(unsigned index, const QRect& row,
                                                      Qt::LayoutDirection direction) const;
    /// The capsule of the pill style, to the left of the buttons.
    [[nodiscard]] QRect blobFrameForCellFrame(const QRect& row,
                                              Qt::LayoutDirection direction) const;
    /// Only a press within it may begin a vertical drag.
    [[nodiscard]] QRect dragHandleFrame(const QRect& row, Qt::LayoutDirection direction) const;

private:
    QFont nameFont_, statusFont_;
    int nameHeight_, statusHeight_, rowHeight_;
};

}  // namespace ui
