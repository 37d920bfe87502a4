#include "app/commands/menu.h"

#include <iterator>

#include "app/commands/commands.h"

namespace app {

MenuItem action(const QString& title, std::function<void()> perform) {
    return {MenuItem::Kind::Action, title, std::move(perform)};
}

MenuItem separator() {
    return {MenuItem::Kind::Separator};
}

MenuItem pseudoSeparator() {
    return {MenuItem::Kind::PseudoSeparator};
}

MenuItem heading(const QString& title) {
    return {MenuItem::Kind::Heading, title};
}

MenuItem note(const QString& text) {
    return {MenuItem::Kind::Note, text};
}

MenuItem submenu(const QString& title, Menu items) {
    MenuItem item{MenuItem::Kind::Submenu, title};
    item.items = std::move(items);
    return item;
}

MenuItem commandItem(const Commands& commands, Command command, qint64 tag) {
    const CommandState state = commands.state(command, tag);
    MenuItem item = action(state.title.isEmpty() ? commandTitle(command, tag) : state.title,
                           [&commands, command, tag] { commands.perform(command, tag); });
    item.state = state;
    return item;
}

Menu commandItems(const Commands& commands, Command command) {
    Menu menu;
    for (const auto& group : commandTags(command)) {
        menu.push_back(separator());
        for (const qint64 tag : group) {
            menu.push_back(commandItem(commands, command, tag));
            menu.back().isChoice = true;
        }
    }
    menu.erase(menu.begin());
    return menu;
}

QString literalTitle(const QString& text) {
    return QString(text).replace(u'&', QStringLiteral("&&"));
}

void append(Menu& menu, Menu items) {
    menu.insert(menu.end(), std::make_move_iterator(items.begin()),
                std::make_move_iterator(items.end()));
}

}  // namespace app
