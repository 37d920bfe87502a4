#include "ui/history/history_item_menu.h"

#include "ui/menus/menu_items.h"
#include "ui/menus/open_with_menu.h"
#include "ui/text.h"

namespace ui {

using app::HistoryActions;

HistoryItemMenu::HistoryItemMenu(app::HistoryEntry entry, const HistoryActions& actions,
                                 QWidget* parent)
    : QMenu(menuText(entry.name), parent), entry_(std::move(entry)), actions_(actions) {
    setToolTipsVisible(true);
    connect(this, &QMenu::aboutToShow, this, &HistoryItemMenu::fill);
}

bool HistoryItemMenu::openFile() const {
    const auto path = entry_.existingPath();
    if (path) {
        actions_.open(*path);
    }
    return path.has_value();
}

void HistoryItemMenu::fill() {
    clear();
    if (const auto path = entry_.existingPath()) {
        addFileItems(*path);
    }
    addAddressItems();
}

void HistoryItemMenu::addFileItems(const QString& path) {
    add("Open", &HistoryActions::open, path);
    addOpenWithMenu(*this, {path}, [actions = actions_, path](const QString& identifier) {
        actions.openWithApplication(path, identifier);
    });
    add("Show in Folder", &HistoryActions::reveal, path);
    add("Move to Trash", &HistoryActions::moveToTrash, path);
    addSeparator();
    add("Copy Path", &HistoryActions::copyPath, path);
    addInertItem(*this, path);
    addSeparator();
}

void HistoryItemMenu::addAddressItems() {
    const QString& url = entry_.originalURL;
    add("Open Original URL", &HistoryActions::openOriginalURL, url);
    add("Copy Original URL", &HistoryActions::copyOriginalURL, url);
    addInertItem(*this, url);
    addSeparator();
    add("Download Again", &HistoryActions::download, url);
}

void HistoryItemMenu::add(const char* title, void (HistoryActions::*action)(const QString&) const,
                          const QString& object) {
    connect(addAction(translated(title)), &QAction::triggered, this,
            [actions = actions_, action, object] { (actions.*action)(object); });
}

}  // namespace ui
