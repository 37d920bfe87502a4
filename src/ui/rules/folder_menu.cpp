#include "ui/rules/folder_menu.h"

#include <QMenu>
#include <QMessageBox>
#include <QPushButton>

#include "app/rules/folder_menu.h"
#include "platform/session/applications.h"
#include "ui/art/icons.h"
#include "ui/menus/menu_items.h"
#include "ui/rules/folder_selector.h"
#include "ui/rules/rule_editor.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

using Kind = app::FolderMenuItem::Kind;

constexpr int mostCharacters = 80;

/// Adds the items, each with what it does.
class Filler {
public:
    Filler(QMenu& menu, app::RuleBook& rules, platform::UserDefaults& defaults, QWidget* window)
        : menu_(menu), rules_(rules), defaults_(defaults), window_(window) {}

    void fill() {
        app::FolderMenuForm form;
        form.setting = app::Folders(defaults_).downloadsFolder();
        form.appendSpecialCases = form.setStates = form.addExplanation = true;
        form.menuIsEmpty = menu_.isEmpty();
        const app::FolderMenu content =
            app::folderMenu(form, app::Folders(defaults_), rules_, defaults_);
        for (const app::FolderMenuItem& item : content.items) {
            add(item);
        }
    }

private:
    /// What an item does outlives this object, so it gets copies.
    struct Surroundings {
        app::RuleBook& rules;
        platform::UserDefaults& defaults;
        QWidget* window;
    };
    template <typename Act>
    QAction* addAction(const QString& title, Act act, const QIcon& icon = {}) {
        QAction* action = menu_.addAction(icon, title);
        QObject::connect(action, &QAction::triggered, action,
                         [act, here = Surroundings{rules_, defaults_, window_}] { act(here); });
        return action;
    }

    void add(const app::FolderMenuItem& item) {
        const QString title = translated(item.title);
        switch (item.kind) {
            case Kind::Heading:
                menu_.addSection(title);
                break;
            case Kind::Separator:
            case Kind::PseudoSeparator:
                menu_.addSeparator();
                break;
            case Kind::DefaultDownloadsFolder:
                break;
            case Kind::Folder:
                addFolder(item);
                break;
            case Kind::Other:
                addAction(title, [](const Surroundings& here) { chooseOther(here); });
                break;
            case Kind::ClearMenu:
                addAction(title, [](const Surroundings& here) {
                    app::Folders(here.defaults).clearRecentDownloadFolders();
                });
                break;
            case Kind::Rule:
                addRule(item);
                break;
            case Kind::DefineRule:
                addAction(title, [](const Surroundings& here) {
                    defineOrEditSpecialCase({}, here.rules, here.defaults, here.window);
                });
                break;
            case Kind::RemoveAllRules:
                addAction(title, [](const Surroundings& here) { removeAllRules(here); });
                break;
            case Kind::Explanation:
                addInertItem(menu_, title);
                break;
        }
    }

    void addFolder(const app::FolderMenuItem& item) {
        QAction* action = addAction(
            menuText(item.title + item.suffix, mostCharacters),
            [path = item.path](const Surroundings& here) {
                app::Folders(here.defaults).setDownloadsFolder(path);
            },
            folderIcon());
        action->setCheckable(true);
        action->setChecked(item.isChecked);
    }

    void addRule(const app::FolderMenuItem& item) {
        const app::Rule rule = app::ruleFromDictionary(item.rule);
        QMenu* submenu = menu_.addMenu(menuText(item.title));
        submenu->setIcon(rule.extensions.isEmpty()
                             ? symbolIcon(u"link"_s)
                             : QIcon(fileTypePixmap(rule.extensions.front().toLower(), 16,
                                                    menu_.devicePixelRatioF())));
        Filler filler(*submenu, rules_, defaults_, window_);
        filler.addAction(translated("Edit..."), [rule = item.rule](const Surroundings& here) {
            defineOrEditSpecialCase(rule, here.rules, here.defaults, here.window);
        });
        filler.addAction(translated("Remove"), [rule = item.rule](const Surroundings& here) {
            here.rules.removeSpecialCase(rule);
        });
        submenu->addSeparator();
        const auto application = platform::applicationWithIdentifier(rule.application);
        for (const QString& effect :
             app::ruleEffects(rule, application ? application->name : QString())) {
            addInertItem(*submenu, effect);
        }
    }

    static void chooseOther(const Surroundings& here) {
        app::Folders folders(here.defaults);
        const QString path = chooseFolder(here.window, folders.downloadsFolder());
        if (!path.isEmpty()) {
            folders.setDownloadsFolder(path);
        }
    }

    static void removeAllRules(const Surroundings& here) {
        QMessageBox box(QMessageBox::Question, translated("Remove all rules?"),
                        translated("Remove all rules?"), QMessageBox::Cancel, here.window);
        box.setInformativeText(translated("This cannot be undone."));
        QPushButton* remove =
            box.addButton(translated("Remove All Rules"), QMessageBox::DestructiveRole);
        box.exec();
        if (box.clickedButton() == remove) {
            here.rules.removeAllSpecialCases();
        }
    }

    QMenu& menu_;
    app::RuleBook& rules_;
    platform::UserDefaults& defaults_;
    QWidget* window_;
};

}  // namespace

void populateDownloadsFolderMenu(QMenu& menu, app::RuleBook& rules,
                                 platform::UserDefaults& defaults, QWidget* window) {
    Filler(menu, rules, defaults, window).fill();
}

}  // namespace ui
