#include "ui/commands/menu_items.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>

#include "ui/art/icons.h"
#include "ui/commands/menu_text.h"
#include "ui/commands/mnemonics.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

using Kind = app::MenuItem::Kind;

constexpr int iconSize = 16;

QIcon iconOf(const app::MenuIcon& icon, const QMenu& menu) {
    switch (icon.kind) {
        case app::MenuIcon::Kind::None:
            return {};
        case app::MenuIcon::Kind::Folder:
            return folderIcon();
        case app::MenuIcon::Kind::Application:
            return applicationIconNamed(icon.name);
        case app::MenuIcon::Kind::FileType:
            return fileTypePixmap(icon.name, iconSize, menu.devicePixelRatioF());
        case app::MenuIcon::Kind::Link:
            return itemIcon(u"link"_s);
    }
    return {};
}

QAction* actionFor(const app::MenuItem& item, QMenu& menu) {
    if (item.kind == Kind::Note) {
        return addInertItem(menu, item.title);
    }
    auto* action = new QAction(item.title, &menu);
    switch (item.kind) {
        case Kind::Submenu: {
            auto* submenu = new QMenu(item.title, &menu);
            addMenuItems(*submenu, item.items);
            action->setMenu(submenu);
            QObject::connect(action, &QObject::destroyed, submenu, &QObject::deleteLater);
            break;
        }
        case Kind::Heading:
        case Kind::Separator:
        case Kind::PseudoSeparator:
            action->setSeparator(true);
            break;
        case Kind::Action:
        case Kind::Note:
            QObject::connect(action, &QAction::triggered, &menu,
                             [perform = item.perform] { perform(); });
            break;
    }
    action->setIcon(iconOf(item.icon, menu));
    action->setEnabled(item.state.isEnabled);
    action->setCheckable(item.state.isChecked.has_value());
    action->setChecked(item.state.isChecked.value_or(false));
    if (action->isChecked() && !action->icon().isNull()) {
        // Styles draw no more than a faint frame around the icon.
        QFont font = menu.font();
        font.setBold(true);
        action->setFont(font);
    }
    if (item.isChoice) {
        // Only for its looks: the menu is made anew for every opening.
        (new QActionGroup(action))->addAction(action);
    }
    return action;
}

/// Names of folders, programs and files have an icon and no mnemonic.
bool isOurs(const app::MenuItem& item) {
    return (item.kind == Kind::Action || item.kind == Kind::Submenu) &&
           item.icon.kind == app::MenuIcon::Kind::None;
}

}  // namespace

QList<QAction*> addMenuItems(QMenu& menu, const app::Menu& items, QAction* before) {
    QList<QAction*> made, commands;
    for (const app::MenuItem& item : items) {
        made.append(actionFor(item, menu));
        menu.insertAction(before, made.last());
        if (isOurs(item)) {
            commands.append(made.last());
        }
    }
    completeMnemonics(menu, commands);
    return made;
}

}  // namespace ui
