#include "ui/log/log_find_bar.h"

#include <QAbstractItemView>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QToolButton>

#include "ui/log/log_model.h"
#include "ui/text.h"

namespace ui {

LogFindBar::LogFindBar(QAbstractItemView& list, QWidget* parent)
    : QWidget(parent), list_(list), text_(new QLineEdit(this)), result_(new QLabel(this)) {
    text_->setPlaceholderText(translated("Find in the Log"));
    text_->setAccessibleName(text_->placeholderText());
    text_->setClearButtonEnabled(true);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->addWidget(text_, 1);
    layout->addWidget(result_);
    const auto addButton = [&](Qt::ArrowType arrow, const QString& name, bool backwards) {
        auto* button = new QToolButton(this);
        button->setArrowType(arrow);
        button->setAutoRaise(true);
        button->setToolTip(name);
        button->setAccessibleName(name);
        connect(button, &QToolButton::clicked, this, [this, backwards] { find(backwards); });
        layout->addWidget(button);
    };
    addButton(Qt::UpArrow, translated("Find Previous"), true);
    addButton(Qt::DownArrow, translated("Find Next"), false);
    connect(text_, &QLineEdit::returnPressed, this, [this] { find(false); });
    connect(text_, &QLineEdit::textEdited, this, [this] {
        if (!isMatch(list_.currentIndex().row()))
            find(false);
    });
    const auto addKey = [this](const QKeySequence& key, QWidget* where, auto act) {
        connect(new QShortcut(key, where, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
                &QShortcut::activated, this, act);
    };
    addKey(QKeySequence(Qt::Key_Escape), this, [this] { close(); });
    addKey(QKeySequence::FindNext, parent, [this] { find(false); });
    addKey(QKeySequence::FindPrevious, parent, [this] { find(true); });
    hide();
}

void LogFindBar::open() {
    show();
    text_->setFocus(Qt::ShortcutFocusReason);
    text_->selectAll();
}

void LogFindBar::close() {
    hide();
    list_.setFocus(Qt::OtherFocusReason);
}

bool LogFindBar::isMatch(int row) const {
    const QAbstractItemModel& model = *list_.model();
    return row >= 0 && model.index(row, 0)
                           .data(Qt::DisplayRole)
                           .toString()
                           .contains(text_->text(), Qt::CaseInsensitive);
}

void LogFindBar::find(bool backwards) {
    result_->clear();
    const int count = list_.model()->rowCount();
    if (text_->text().isEmpty() || count == 0)
        return;
    const int step = backwards ? count - 1 : 1;
    const int begin = list_.currentIndex().isValid() ? list_.currentIndex().row()
                      : backwards                    ? 0
                                                     : count - 1;
    int row = begin;
    do {
        row = (row + step) % count;
        if (isMatch(row)) {
            const QModelIndex found = list_.model()->index(row, 0);
            list_.setCurrentIndex(found);
            list_.scrollTo(found, QAbstractItemView::PositionAtCenter);
            return;
        }
    } while (row != begin);
    result_->setText(translated("Not found"));
}

}  // namespace ui
