#include "ui/log/log_delegate.h"

#include <QApplication>
#include <QFontDatabase>
#include <QPainter>
#include <QStyle>
#include <algorithm>

#include "ui/log/log_model.h"

namespace ui {

namespace {

constexpr int margin = 6;

QFont digitsFont(const QFont& beside) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(beside.pointSizeF());
    return font;
}

/// Draws the parts of a line one behind the other, from the right where languages are read so.
class LinePainter {
public:
    LinePainter(QPainter& painter, const QStyleOptionViewItem& option)
        : painter_(painter), direction_(option.direction), line_(option.rect) {}

    /// Draws as much as fits and moves the edge where `room` begins behind it.
    void draw(QRect& room, const QString& text, const QFont& font, const QColor& color) {
        if (text.isEmpty() || room.width() <= 0)
            return;
        const QFontMetrics metrics(font);
        const int width = metrics.horizontalAdvance(text);
        QRect place = room;
        place.setWidth(std::min(width, room.width()));
        painter_.setFont(font);
        painter_.setPen(color);
        painter_.drawText(QStyle::visualRect(direction_, line_, place),
                          Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter |
                              Qt::TextSingleLine | Qt::TextDontClip,
                          metrics.elidedText(text, Qt::ElideRight, room.width()));
        room.setLeft(room.left() + width);
    }

private:
    QPainter& painter_;
    const Qt::LayoutDirection direction_;
    const QRect line_;
};

}  // namespace

void LogDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
    QStyleOptionViewItem background = option;
    const QWidget* widget = option.widget;
    const QStyle* style = widget != nullptr ? widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &background, painter, widget);
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const QPalette::ColorGroup group =
        option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    const QColor text =
        option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    const QColor faint = isSelected ? text : option.palette.color(QPalette::PlaceholderText);
    QString message = index.data(LogModel::MessageRole).toString();
    message.replace(QChar::LineSeparator, QChar(u'⏎'));
    QFont messageFont = option.font;
    messageFont.setBold(index.data(LogModel::ProblemRole).toBool());
    QRect rect = option.rect.adjusted(margin, 0, -margin, 0);
    painter->save();
    LinePainter line(*painter, option);
    line.draw(rect, index.data(LogModel::MetaRole).toString(), digitsFont(option.font), faint);
    const QString count = index.data(LogModel::CountRole).toString();
    QRect room = rect.adjusted(0, 0, -option.fontMetrics.horizontalAdvance(count), 0);
    line.draw(room, message, messageFont, text);
    rect.setLeft(room.left());
    line.draw(rect, count, option.font, faint);
    painter->restore();
}

QSize LogDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    constexpr int gap = 4;
    const int height =
        std::max(option.fontMetrics.height(), QFontMetrics(digitsFont(option.font)).height());
    return {option.fontMetrics.averageCharWidth() * 20, height + gap};
}

}  // namespace ui
