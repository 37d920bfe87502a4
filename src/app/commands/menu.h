#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "app/commands/command.h"

namespace app {

class Commands;

/// What stands beside the title of an item.
struct MenuIcon {
    enum class Kind {
        None,
        Folder,
        /// Of an application, by its name in the desktop's icon theme, or a path.
        Application,
        /// Of files with an extension.
        FileType,
        /// Of addresses.
        Link,
    };
    Kind kind = Kind::None;
    QString name;
};

/// One line of a menu that is put together when it is opened. Titles are in the user's language;
/// `&` stands before a mnemonic.
struct MenuItem {
    enum class Kind {
        Action,
        Submenu,
        Separator,
        /// A smaller gap than a separator.
        PseudoSeparator,
        Heading,
        /// Small text that cannot be chosen, as it is: nothing in it is a mnemonic.
        Note,
    };
    Kind kind = Kind::Separator;
    QString title = {};
    std::function<void()> perform = {};
    CommandState state = {};
    /// One of several, of which only one is marked.
    bool isChoice = false;
    MenuIcon icon = {};
    std::vector<MenuItem> items = {};
};

using Menu = std::vector<MenuItem>;

[[nodiscard]] MenuItem action(const QString& title, std::function<void()> perform);
[[nodiscard]] MenuItem separator();
[[nodiscard]] MenuItem pseudoSeparator();
[[nodiscard]] MenuItem heading(const QString& title);
[[nodiscard]] MenuItem note(const QString& text);
[[nodiscard]] MenuItem submenu(const QString& title, Menu items);

/// A command as it stands at this moment.
[[nodiscard]] MenuItem commandItem(const Commands& commands, Command command, qint64 tag = 0);
/// One item for each of the command's tags, with separators between groups of them.
[[nodiscard]] Menu commandItems(const Commands& commands, Command command);

/// A name or an address as a title: nothing in it is a mnemonic.
[[nodiscard]] QString literalTitle(const QString& text);

void append(Menu& menu, Menu items);

}  // namespace app
