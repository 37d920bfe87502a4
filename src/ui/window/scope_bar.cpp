#include "ui/window/scope_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QToolButton>

#include "ui/art/hairline.h"
#include "ui/art/theme.h"

namespace ui {

ScopeBar::ScopeBar(const QString& label, const QList<Item>& items, QWidget* parent)
    : QWidget(parent) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 3, 8, 4);
    layout->setSpacing(4);
    layout->addWidget(new QLabel(label, this));
    for (const Item& item : items) {
        auto* button = new QToolButton(this);
        button->setText(item.title);
        button->setObjectName(item.identifier);
        button->setAccessibleName(label + u' ' + item.title);
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
        buttons_.addButton(button);
        layout->addWidget(button);
    }
    layout->addStretch();
    select({});
    connect(&buttons_, &QButtonGroup::buttonClicked, this,
            [this](QAbstractButton* button) { Q_EMIT selected(button->objectName()); });
}

void ScopeBar::select(const QString& identifier) {
    const QList<QAbstractButton*> buttons = buttons_.buttons();
    buttons.first()->setChecked(true);
    for (QAbstractButton* button : buttons) {
        if (button->objectName() == identifier) {
            button->setChecked(true);
        }
    }
}

void ScopeBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintHairlineBelow(painter, rect(), separatorColor(palette()));
}

}  // namespace ui
