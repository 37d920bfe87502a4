#include "ui/history/history_menu.h"

#include <QKeyEvent>
#include <QWidgetAction>
#include <algorithm>

#include "app/history/historian.h"
#include "app/main_controller.h"
#include "ui/commands/menu_text.h"
#include "ui/history/history_search.h"
#include "ui/text.h"

namespace ui {

HistoryMenu::HistoryMenu(app::DQHistorian& historian, app::DQMainController& controller,
                         platform::UserDefaults& defaults, SearchField searchField, QWidget* parent)
    : HistoryListMenu(app::HistoryActions(controller), icons_, parent),
      historian_(historian),
      controller_(controller),
      context_(controller.queue().context()),
      defaults_(defaults) {
    setTitle(translated("History"));
    if (searchField == SearchField::Shown) {
        makeSearch();
    }
    connect(this, &QMenu::aboutToShow, this, &HistoryMenu::rebuild);
    connect(&historian_, &app::DQHistorian::itemsRemoved, this, [this] { icons_.clear(); });
}

HistoryMenu::~HistoryMenu() = default;

void HistoryMenu::makeSearch() {
    search_ = new HistorySearch(defaults_, this);
    auto* item = new QWidgetAction(this);
    item->setText(translated("Search"));
    item->setDefaultWidget(search_);
    addAction(item);
    fixedItems_ = {item, addSeparator()};
    connect(this, &QMenu::aboutToShow, search_, &HistorySearch::selectText);
    connect(search_, &HistorySearch::searchChanged, this, [this] {
        if (isVisible()) {
            rebuild();
        }
    });
}

void HistoryMenu::rebuild() {
    QList<QAction*> items = actions();
    for (QAction* fixed : fixedItems_) {
        items.removeOne(fixed);
    }
    if (search_) {
        search_->setHasHistory(historian_.numberOfItems() > 0);
    }
    exchangeItems([&] {
        removeItems(items);
        populate();
    });
}

void HistoryMenu::populate() {
    const app::HistoryListing listing = app::historyListing(
        historian_.history(), defaults_, search_ ? search_->terms() : QStringList());
    if (listing.hasNoMatches) {
        addInertItem(*this, translated("No Matches"));
        addSeparator();
    }
    if (listing.isEmpty()) {
        addInertItem(*this, translated("History is empty"));
        return;
    }
    addEntries(listing.history, listing.items);
    if (listing.isSearchResult) {
        return;
    }
    addDays(listing);
    addSeparator();
    connect(addAction(translated("Clear History")), &QAction::triggered, &historian_, [this] {
        controller_.didRemove(translated("History cleared"),
                              [&historian = historian_, cleared = historian_.clear()] {
                                  historian.putBack(cleared);
                              });
    });
}

void HistoryMenu::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    QAction* active = activeAction();
    if (search_ && search_->type(*event)) {
        setActiveAction(fixedItems_.first());
        return;
    }
    if (isReturn && search_ && (active == nullptr || fixedItems_.contains(active))) {
        // Making an entry the active one would open its submenu; going down does not.
        setActiveAction(fixedItems_.first());
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
        HistoryListMenu::keyPressEvent(&down);
        return;
    }
    HistoryListMenu::keyPressEvent(event);
}

void HistoryMenu::addDays(const app::HistoryListing& listing) {
    if (!listing.items.empty() && !listing.days.empty()) {
        addSeparator();
    }
    const QDateTime now = context_.wallNow();
    const std::size_t shown = std::min(listing.days.size(), mostItems);
    for (std::size_t index = 0; index < shown; ++index) {
        const app::HistoryListing::Day& day = listing.days[index];
        addMenu(new HistoryDayMenu(listing.title(day, now), listing.history, day.items,
                                   historyActions(), icons_, this));
    }
    addRest(listing.days.size() - shown);
}

}  // namespace ui
