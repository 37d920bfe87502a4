#include "ui/toolbar/segmented_control.h"

#include <QHBoxLayout>
#include <QPainter>

#include "ui/art/icons.h"
#include "ui/art/theme.h"

namespace ui {
namespace {

constexpr QSize segmentIconSize(20, 20);

}  // namespace

SegmentedControl::SegmentedControl(const std::array<Segment, 2>& segments, bool isCheckable,
                                   QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(1);
    for (int index = 0; index < 2; ++index) {
        const Segment& segment = segments[static_cast<std::size_t>(index)];
        auto* button = new QToolButton(this);
        button->setIcon(symbolIcon(segment.symbol));
        button->setIconSize(segmentIconSize);
        button->setObjectName(segment.symbol);
        button->setToolTip(segment.title);
        button->setAccessibleName(segment.title);
        button->setCheckable(isCheckable);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
        connect(button, &QToolButton::clicked, this, [this, button, index](bool isChecked) {
            if (button->isCheckable()) {
                button->setChecked(!isChecked);
            }
            Q_EMIT segmentClicked(index);
        });
        button->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(button, &QToolButton::customContextMenuRequested, this,
                [this, button, index](const QPoint& position) {
                    Q_EMIT segmentMenuWanted(index, button->mapToGlobal(position));
                });
        layout->addWidget(button);
        buttons_[static_cast<std::size_t>(index)] = button;
    }
}

void SegmentedControl::setSegmentEnabled(int segment, bool isEnabled) {
    buttons_.at(static_cast<std::size_t>(segment))->setEnabled(isEnabled);
}

void SegmentedControl::setSegmentChecked(int segment, bool isChecked) {
    buttons_.at(static_cast<std::size_t>(segment))->setChecked(isChecked);
}

void SegmentedControl::setSegmentToolTip(int segment, const QString& text) {
    buttons_.at(static_cast<std::size_t>(segment))->setToolTip(text);
}

void SegmentedControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(outlineColor(palette()));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 5, 5);
    painter.setRenderHint(QPainter::Antialiasing, false);
    // One pixel of the screen, whatever the scale.
    painter.setPen(QPen(outlineColor(palette()), 0));
    painter.drawLine(width() / 2, 5, width() / 2, height() - 6);
}

}  // namespace ui
