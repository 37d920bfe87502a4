#pragma once

#include <QStyledItemDelegate>

namespace ui {

/// Paints a line of the log: when and who in a fixed width and faint, the message as text.
class LogDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;
};

}  // namespace ui
