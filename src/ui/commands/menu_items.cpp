#include "ui/commands/menu_items.h"

#include <QAction>
#include <QActionGroup>
#include <QFontInfo>
#include <QMenu>

#include "ui/art/icons.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

using Kind = app::MenuItem::Kind;

constexpr int iconSize = 16;
/// Addresses and paths are shortened in their middle to so many times the height of their letters.
constexpr int longestNote = 40;

QIcon iconOf(const app::MenuIcon& icon, const QMenu& menu) {
    switch (icon.kind) {
        case app::MenuIcon::Kind::None:
            return {};
        case app::MenuIcon::Kind::Folder:
            return QIcon::fromTheme(u"folder"_s, symbolIcon(u"folder"_s));
        case app::MenuIcon::Kind::Application:
            return icon.name.startsWith(u'/') ? QIcon(icon.name) : QIcon::fromTheme(icon.name);
        case app::MenuIcon::Kind::FileType:
            return fileTypePixmap(icon.name, iconSize, menu.devicePixelRatioF());
        case app::MenuIcon::Kind::Link:
            return symbolIcon(u"link"_s);
    }
    return {};
}

QAction* noteAction(const QString& text, QMenu& menu) {
    QFont font = menu.font();
    font.setPixelSize(qMax(9, QFontInfo(font).pixelSize() * 5 / 6));
    const QFontMetrics metrics(font);
    const QString shown = metrics.elidedText(text, Qt::ElideMiddle, longestNote * metrics.height());
    auto* action = new QAction(app::literalTitle(shown), &menu);
    action->setFont(font);
    action->setEnabled(false);
    return action;
}

QAction* actionFor(const app::MenuItem& item, QMenu& menu) {
    if (item.kind == Kind::Note) {
        return noteAction(item.title, menu);
    }
    auto* action = new QAction(item.title, &menu);
    switch (item.kind) {
        case Kind::Submenu: {
            auto* submenu = new QMenu(item.title, &menu);
            addMenuItems(*submenu, item.items);
            action->setMenu(submenu);
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
    if (item.isChoice) {
        // Only for its looks: the menu is made anew for every opening.
        (new QActionGroup(action))->addAction(action);
    }
    return action;
}

}  // namespace

QList<QAction*> addMenuItems(QMenu& menu, const app::Menu& items, QAction* before) {
    QList<QAction*> made;
    for (const app::MenuItem& item : items) {
        made.append(actionFor(item, menu));
        menu.insertAction(before, made.last());
    }
    return made;
}

}  // namespace ui
