#include "app/commands/folder_items.h"

#include "app/commands/commands.h"
#include "app/main_controller.h"
#include "app/rules/folder_menu.h"
#include "app/rules/rule.h"
#include "links/text/localization.h"
#include "platform/session/applications.h"

namespace app {
namespace {

using Kind = FolderMenuItem::Kind;

QString translated(const QString& english) {
    return links::localized(english.toUtf8().constData());
}

/// Makes the items of a menu out of what is to be offered.
class FolderItems {
public:
    explicit FolderItems(const Commands& commands)
        : commands_(commands),
          rules_(commands.surroundings().controller.ruleBook()),
          defaults_(commands.surroundings().defaults) {}

    [[nodiscard]] Menu items(bool menuIsEmpty) const {
        const Folders folders(defaults_);
        FolderMenuForm form;
        form.setting = folders.downloadsFolder();
        form.appendSpecialCases = form.setStates = form.addExplanation = true;
        form.menuIsEmpty = menuIsEmpty;
        Menu menu;
        for (const FolderMenuItem& offered : folderMenu(form, folders, rules_, defaults_).items) {
            if (offered.kind != Kind::DefineRule || commands_.editRule) {
                menu.push_back(item(offered));
            }
        }
        return menu;
    }

private:
    [[nodiscard]] MenuItem item(const FolderMenuItem& offered) const {
        switch (offered.kind) {
            case Kind::Heading:
                return heading(translated(offered.title));
            case Kind::Separator:
                return separator();
            case Kind::PseudoSeparator:
                return pseudoSeparator();
            case Kind::Explanation:
                return note(translated(offered.title));
            case Kind::Rule:
                return ruleItem(offered);
            case Kind::DefaultDownloadsFolder:
            case Kind::Folder:
                return folderItem(offered);
            case Kind::Other:
                return action(translated(offered.title), [this_ = *this] { this_.chooseOther(); });
            case Kind::ClearMenu:
                return action(translated(offered.title), [&defaults = defaults_] {
                    Folders(defaults).clearRecentDownloadFolders();
                });
            case Kind::DefineRule:
                return action(translated(offered.title),
                              [&commands = commands_] { commands.editRule({}); });
            case Kind::RemoveAllRules:
                return action(translated(offered.title),
                              [this_ = *this] { this_.removeAllRules(); });
        }
        return separator();
    }

    [[nodiscard]] MenuItem folderItem(const FolderMenuItem& offered) const {
        MenuItem item = action(literalTitle(offered.title + offered.suffix),
                               [&defaults = defaults_, path = offered.path] {
                                   Folders(defaults).setDownloadsFolder(path);
                               });
        item.state.isChecked = offered.isChecked;
        item.icon = {MenuIcon::Kind::Folder, {}};
        return item;
    }

    [[nodiscard]] MenuItem ruleItem(const FolderMenuItem& offered) const {
        const Rule rule = ruleFromDictionary(offered.rule);
        Menu menu;
        if (commands_.editRule) {
            menu.push_back(action(links::localized("Edit..."),
                                  [&commands = commands_, dictionary = offered.rule] {
                                      commands.editRule(dictionary);
                                  }));
        }
        menu.push_back(action(
            links::localized("Remove"),
            [&rules = rules_, dictionary = offered.rule] { rules.removeSpecialCase(dictionary); }));
        menu.push_back(separator());
        const auto application = rule.application.isEmpty()
                                     ? std::nullopt
                                     : platform::applicationWithIdentifier(rule.application);
        for (const QString& effect :
             ruleEffects(rule, application ? application->name : QString())) {
            menu.push_back(note(effect));
        }
        MenuItem item = submenu(literalTitle(offered.title), std::move(menu));
        item.icon = rule.extensions.isEmpty()
                        ? MenuIcon{MenuIcon::Kind::Link, {}}
                        : MenuIcon{MenuIcon::Kind::FileType, rule.extensions.first()};
        return item;
    }

    void chooseOther() const {
        Questions& questions = commands_.surroundings().frontEnd.questions;
        if (const auto path = questions.chooseAbbreviatedDownloadsFolder()) {
            Folders(defaults_).setDownloadsFolder(*path);
        }
    }

    void removeAllRules() const {
        const Alert alert{Alert::Kind::RemoveAllRules, QStringLiteral("Remove all rules?"),
                          QStringLiteral("This cannot be undone."),
                          QStringLiteral("Remove All Rules"), QStringLiteral("Cancel")};
        if (commands_.surroundings().frontEnd.questions.confirm(alert)) {
            rules_.removeAllSpecialCases();
        }
    }

    const Commands& commands_;
    RuleBook& rules_;
    platform::UserDefaults& defaults_;
};

}  // namespace

Menu downloadsFolderItems(const Commands& commands, bool menuIsEmpty) {
    return FolderItems(commands).items(menuIsEmpty);
}

}  // namespace app
