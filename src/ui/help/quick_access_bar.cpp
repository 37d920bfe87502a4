#include "ui/help/quick_access_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>

#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

QuickAccessBar::QuickAccessBar(help::DQHelpManager& manager, bool isCentered, QWidget* parent)
    : QWidget(parent), manager_(manager), isCentered_(isCentered), row_(new QHBoxLayout(this)) {
    setFixedHeight(height);
    row_->setContentsMargins(isCentered ? 5 : 15, 0, 15, 0);
    row_->setSpacing(5);
    hide();
}

void QuickAccessBar::showQuickAccessMenusForCategories(const QStringList& categories) {
    while (QLayoutItem* item = row_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    setVisible(!categories.isEmpty());
    if (isCentered_)
        row_->addStretch();
    row_->addWidget(new QLabel(translated("Quick Access"), this));
    for (const QString& category : categories) {
        auto* button = new QToolButton(this);
        button->setText(category.left(1).toUpper() + category.sliced(1));
        button->setPopupMode(QToolButton::InstantPopup);
        button->setFocusPolicy(Qt::StrongFocus);
        auto* menu = new QMenu(button);
        for (const help::HelpAnchor& anchor : manager_.anchorsOfCategory(category)) {
            menu->addAction(QString(anchor.name).replace(u'&', u"&&"_s), this, [this, anchor] {
                Q_EMIT chosen(anchor.path + u'#' + anchor.fragment);
            });
        }
        button->setMenu(menu);
        row_->addWidget(button);
    }
    row_->addStretch();
}

}  // namespace ui
