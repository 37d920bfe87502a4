#include "ui/history/history_list_menu.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <algorithm>

#include "links/text/localization.h"
#include "ui/commands/menu_text.h"
#include "ui/history/history_icons.h"
#include "ui/history/history_item_menu.h"
#include "ui/text.h"

namespace ui {
namespace {

void closeAllMenus() {
    while (QWidget* menu = QApplication::activePopupWidget()) {
        menu->close();
    }
}

}  // namespace

HistoryListMenu::HistoryListMenu(const app::HistoryActions& actions, HistoryIcons& icons,
                                 QWidget* parent)
    : QMenu(parent), actions_(actions), icons_(icons) {}

void HistoryListMenu::addEntries(const QList<app::HistoryEntry>& history,
                                 const std::vector<qsizetype>& indexes) {
    std::size_t shown = 0;
    for (const qsizetype index : indexes) {
        const app::HistoryEntry& entry = history[index];
        if (!entry.canBeShown()) {
            continue;
        }
        if (++shown > mostItems) {
            break;
        }
        QAction* item = addMenu(new HistoryItemMenu(entry, actions_, this));
        item->setIcon(icons_.icon(entry));
        item->setIconVisibleInMenu(true);
    }
    addRest(shown > mostItems ? indexes.size() - mostItems : 0);
}

void HistoryListMenu::addRest(std::size_t count) {
    if (count > 0) {
        addInertItem(*this,
                     links::filledFormat(translated("(%lu more)"), {QString::number(count)}));
    }
}

void HistoryListMenu::exchangeItems(const std::function<void()>& exchange) {
    isExchangingItems_ = true;
    exchange();
    isExchangingItems_ = false;
    if (isVisible()) {
        fitToScreen();
    }
}

/// Where it was opened, if it has room there.
void HistoryListMenu::fitToScreen() {
    QRect frame(shownAt_, sizeHint());
    const QRect available = screen()->availableGeometry();
    frame.moveRight(std::min(frame.right(), available.right()));
    frame.moveBottom(std::min(frame.bottom(), available.bottom()));
    frame.moveTopLeft(
        {std::max(frame.left(), available.left()), std::max(frame.top(), available.top())});
    setGeometry(frame);
}

void HistoryListMenu::showEvent(QShowEvent* event) {
    shownAt_ = pos();
    QMenu::showEvent(event);
}

/// A menu that is visible lays itself out after every item that comes or goes.
void HistoryListMenu::actionEvent(QActionEvent* event) {
    const bool isLaidOutLater = isExchangingItems_ && isVisible();
    setAttribute(Qt::WA_WState_Visible, isVisible() && !isLaidOutLater);
    QMenu::actionEvent(event);
    setAttribute(Qt::WA_WState_Visible, isVisible() || isLaidOutLater);
}

void HistoryListMenu::removeItems(const QList<QAction*>& items) {
    for (QAction* item : items) {
        removeAction(item);
        QObject* owner = item->menu() ? static_cast<QObject*>(item->menu()) : item;
        owner->deleteLater();
    }
}

bool HistoryListMenu::choose(QAction* item) {
    const auto* entry = item ? qobject_cast<const HistoryItemMenu*>(item->menu()) : nullptr;
    if (!entry || !entry->openFile()) {
        return false;
    }
    closeAllMenus();
    return true;
}

/// A finger cannot point without choosing, so it gets the submenu.
void HistoryListMenu::mouseReleaseEvent(QMouseEvent* event) {
    const bool isMouse = event->source() == Qt::MouseEventNotSynthesized;
    const bool isLeft = event->button() == Qt::LeftButton;
    if (!isMouse || !isLeft || !choose(actionAt(event->position().toPoint()))) {
        QMenu::mouseReleaseEvent(event);
    }
}

void HistoryListMenu::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn || !choose(activeAction())) {
        QMenu::keyPressEvent(event);
    }
}

HistoryDayMenu::HistoryDayMenu(const QString& title, QList<app::HistoryEntry> history,
                               std::vector<qsizetype> indexes, const app::HistoryActions& actions,
                               HistoryIcons& icons, QWidget* parent)
    : HistoryListMenu(actions, icons, parent),
      history_(std::move(history)),
      indexes_(std::move(indexes)) {
    setTitle(menuText(title));
    connect(this, &QMenu::aboutToShow, this, &HistoryDayMenu::fill);
}

void HistoryDayMenu::fill() {
    if (!isEmpty()) {
        return;
    }
    addEntries(history_, indexes_);
    if (isEmpty()) {
        addInertItem(*this, translated("No Matches"));
    }
}

}  // namespace ui
