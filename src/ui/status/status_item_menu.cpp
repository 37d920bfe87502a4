#include "ui/status/status_item_menu.h"

#include <QGuiApplication>

#include "app/commands/commands.h"
#include "app/commands/status_item_menu.h"
#include "app/history/historian.h"
#include "ui/commands/menu_items.h"
#include "ui/history/history_menu.h"

namespace ui {

StatusItemMenu::StatusItemMenu(const app::Commands& commands) {
    const QList<QAction*> items = addMenuItems(
        *this, {app::statusItemWindowItem(commands), app::statusItemSettingsItem(commands),
                app::statusItemLogItem(commands), app::separator()});
    settings_ = items[1];
    log_ = items[2];
    const auto& around = commands.surroundings();
    addMenu(new HistoryMenu(app::historian(), around.controller, around.defaults,
                            HistoryMenu::SearchField::Absent, this));
    addSeparator();
    addMenuItems(*this, app::statusItemProgramItems(commands));
    log_->setVisible(false);
    connect(this, &QMenu::aboutToShow, this, &StatusItemMenu::chooseAlternate);
}

void StatusItemMenu::chooseAlternate() {
    constexpr Qt::KeyboardModifiers alternate = Qt::ControlModifier | Qt::AltModifier;
    const bool showsLog = (QGuiApplication::queryKeyboardModifiers() & alternate) == alternate;
    log_->setVisible(showsLog);
    settings_->setVisible(!showsLog);
}

}  // namespace ui
