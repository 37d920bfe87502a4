#pragma once

#include <QVariantMap>
#include <optional>
#include <vector>

#include "app/rules/folders.h"
#include "app/rules/rule_book.h"

namespace app {

/// One line of the menu that every choice of a folder shows.
struct FolderMenuItem {
    enum class Kind {
        Heading,
        Separator,
        /// A smaller gap than a separator.
        PseudoSeparator,
        DefaultDownloadsFolder,
        Folder,
        Other,
        ClearMenu,
        Rule,
        DefineRule,
        RemoveAllRules,
        Explanation,
    };
    Kind kind;
    /// English; texts of the program are to be translated.
    QString title;
    /// Shown smaller behind the title.
    QString suffix;
    /// Of a folder, abbreviated with a tilde.
    QString path;
    bool isChecked = false;
    /// Takes the place of the item before it while the Alt key is held.
    bool isAlternate = false;
    /// Of a rule; its submenu offers to edit and remove it.
    QVariantMap rule;
};

struct FolderMenu {
    std::vector<FolderMenuItem> items;
    /// The item to show as selected; -1: none.
    qsizetype selectedIndex = -1;
};

struct FolderMenuForm {
    /// The folder in force. Nothing: none is.
    std::optional<QString> setting;
    /// For the folder of a rule, which may have none of its own.
    bool forSpecialCase = false;
    bool appendSpecialCases = false;
    /// The folder in force is checked.
    bool setStates = false;
    bool addExplanation = false;
    /// Nothing stands in the menu before these items.
    bool menuIsEmpty = true;
};

/// Folders that have vanished are left out, except the one in force, which is made again.
[[nodiscard]] FolderMenu folderMenu(const FolderMenuForm& form, const Folders& folders,
                                    const RuleBook& rules, const platform::UserDefaults& defaults);

/// What a rule does, as the lines below "Edit..." and "Remove" in its submenu. `applicationName`
/// is what its application is called; empty: it has none, or it is gone.
[[nodiscard]] QStringList ruleEffects(const Rule& rule, const QString& applicationName);

}  // namespace app
