#pragma once

#include <QFont>
#include <QRect>
#include <array>

namespace ui {

/// Where the parts of a row lie, in device-independent pixels. Mirrored for right-to-left layouts.
class RowGeometry {
public:
    /// What wide rows show of a running download beside its texts, from left to right.
    enum class Column { Percent, Rate, TimeLeft };

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
    /// Around the button: where the pointer reaches it.
    [[nodiscard]] QRect areaOfActionButtonWithIndex(unsigned index, const QRect& row,
                                                    Qt::LayoutDirection direction) const;
    [[nodiscard]] bool hasColumns(const QRect& row) const;
    /// Of all columns and the space before them.
    [[nodiscard]] int columnsWidth() const;
    /// `texts`: the frame of the texts, at whose end the columns stand.
    [[nodiscard]] QRect columnFrame(Column column, const QRect& row, const QRect& texts,
                                    Qt::LayoutDirection direction) const;
    /// The width in which each digit is drawn, so that figures below each other line up. 0: the
    /// digits of the font have one width anyway.
    [[nodiscard]] double digitWidth() const { return digitWidth_; }
    /// The capsule of the pill style, to the left of the buttons.
    [[nodiscard]] QRect blobFrameForCellFrame(const QRect& row,
                                              Qt::LayoutDirection direction) const;
    /// Only a press within it may begin a vertical drag.
    [[nodiscard]] QRect dragHandleFrame(const QRect& row, Qt::LayoutDirection direction) const;

private:
    QFont nameFont_, statusFont_;
    int nameHeight_, statusHeight_, rowHeight_;
    double digitWidth_;
    /// Of each column, with the space before it.
    std::array<int, 3> columnWidths_;
};

}  // namespace ui
