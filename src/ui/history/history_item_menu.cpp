#include "ui/history/history_item_menu.h"

#include "app/history/history_item_menu.h"
#include "ui/commands/menu_items.h"
#include "ui/commands/menu_text.h"

namespace ui {
namespace {

constexpr int longestName = 45;

}  // namespace

HistoryItemMenu::HistoryItemMenu(app::HistoryEntry entry, const app::HistoryActions& actions,
                                 QWidget* parent)
    : QMenu(menuText(entry.name, longestName), parent),
      entry_(std::move(entry)),
      actions_(actions) {
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
    addMenuItems(*this, app::historyItemMenu(entry_, actions_));
}

}  // namespace ui
