#include "ui/history/history_list_menu.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>

#include "links/text/localization.h"
#include "ui/history/history_icons.h"
#include "ui/history/history_item_menu.h"
#include "ui/menus/menu_items.h"
#include "ui/text.h"

namespace ui {
namespace {

/// More than anybody reads in a menu, and still quickly made.
constexpr std::size_t mostEntries = 300;

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
    std::size_t count = 0;
    for (const qsizetype index : indexes) {
        const app::HistoryEntry& entry = history[index];
        if (!entry.canBeShown()) {
            continue;
        }
        if (++count > mostEntries) {
            break;
        }
        QAction* item = addMenu(new HistoryItemMenu(entry, actions_, this));
        item->setIcon(icons_.icon(entry));
        item->setIconVisibleInMenu(true);
    }
    if (count > mostEntries) {
        addInertItem(*this, links::filledFormat(translated("(%lu more)"),
                                                {QString::number(indexes.size() - mostEntries)}));
    }
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

HistoryDayMenu::HistoryDayMenu(QList<app::HistoryEntry> history, app::HistoryListing::Day day,
                               const app::HistoryActions& actions, HistoryIcons& icons,
                               QWidget* parent)
    : HistoryListMenu(actions, icons, parent), history_(std::move(history)), day_(std::move(day)) {
    setTitle(menuText(day_.title));
    connect(this, &QMenu::aboutToShow, this, &HistoryDayMenu::fill);
}

void HistoryDayMenu::fill() {
    if (!isEmpty()) {
        return;
    }
    addEntries(history_, day_.items);
    if (isEmpty()) {
        addInertItem(*this, translated("No Matches"));
    }
}

}  // namespace ui
