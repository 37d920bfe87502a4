#include <gmock/gmock.h>

#include <QDir>
#include <QTemporaryDir>

#include "app/rules/folder_menu.h"
#include "app/rules/rule_book.h"
#include "app/settings.h"
#include "engine/settings.h"
#include "platform/files/files.h"
#include "support/printers.h"

using namespace Qt::Literals::StringLiterals;
using app::FolderMenuItem;
using Kind = FolderMenuItem::Kind;

namespace {

class Rules : public testing::Test {
protected:
    QString makeFolder(const QString& name) {
        const QString path = folder.filePath(name);
        QDir().mkpath(path);
        return path;
    }
    static QStringList titles(const QVariantList& specialCases) {
        QStringList titles;
        for (const QVariant& specialCase : specialCases) {
            titles.append(app::ruleFromDictionary(specialCase.toMap()).title());
        }
        return titles;
    }
    QStringList paths(const app::FolderMenu& menu) {
        QStringList paths;
        for (const FolderMenuItem& item : menu.items) {
            if (item.kind == Kind::Folder) {
                paths.append(item.path);
            }
        }
        return paths;
    }
    app::FolderMenu menu(const app::FolderMenuForm& form) {
        return app::folderMenu(form, folders, book, defaults);
    }

    QTemporaryDir folder;
    platform::UserDefaults defaults{folder.filePath(u"config"_s), u"test"_s};
    app::RuleBook book{defaults};
    app::Folders folders{defaults};
};

TEST_F(Rules, AreSortedStoredAndKeepWhatIsNotUnderstood) {
    book.addSpecialCase({{}, {u"zip"_s}, u"~/z"_s, {}});
    book.addSpecialCase({{u"host10.example"_s}, {}, {}, u"app"_s});
    book.addSpecialCase({{u"host9.example"_s}, {u"b"_s}, {}, {}});
    book.addSpecialCase({{u"host9.example"_s}, {u"a"_s, u"c"_s}, {}, {}});
    const QStringList sorted{u"host9.example::a//c"_s, u"host9.example::b"_s, u"host10.example"_s,
                             u"zip"_s};
    EXPECT_EQ(titles(book.specialCases()), sorted);
    EXPECT_EQ(titles(app::RuleBook(defaults).specialCases()), sorted);

    book.replaceSpecialCase(book.specialCases()[3].toMap(), {{u"a"_s}, {}, {}, {}});
    book.removeSpecialCase(book.specialCases()[3].toMap());
    EXPECT_EQ(titles(app::RuleBook(defaults).specialCases()),
              QStringList({u"a"_s, u"host9.example::a//c"_s, u"host9.example::b"_s}));
    book.removeAllSpecialCases();
    EXPECT_FALSE(defaults.hasValueForKey(app::settings::rules.name()));

    const QVariantMap byHand{{u"Hosts"_s, QVariantList()}, {u"Extensions"_s, QStringList{u"x"_s}}};
    defaults.setObject(app::settings::rules.name(), QVariantList{byHand});
    app::RuleBook another(defaults);
    another.addSpecialCase({{u"h"_s}, {}, {}, {}});
    EXPECT_TRUE(app::RuleBook(defaults).specialCases().back().toMap().contains(u"Hosts"_s))
        << "an empty list matches nothing and must not become a missing one";
}

TEST_F(Rules, SayWhatTheyDo) {
    EXPECT_EQ(app::ruleEffects({{}, {}, u"/a/Folder"_s, u"id"_s}, u"Viewer"_s),
              QStringList({u"Download to Folder"_s, u"Open with Viewer"_s}));
    EXPECT_EQ(app::ruleEffects({{}, {}, {}, u"gone"_s}, {}), QStringList{u"Ineffective"_s});
}

TEST_F(Rules, RecentFoldersGrowAndAreCleared) {
    EXPECT_EQ(folders.recentDownloadsFolders(), app::Folders::defaultFolders());
    const QString a = makeFolder(u"a"_s);
    folders.setDownloadsFolder(a);
    folders.setDownloadsFolder(a);
    EXPECT_EQ(folders.recentDownloadsFolders(),
              app::Folders::defaultFolders() + QStringList{platform::abbreviateWithTilde(a)});
    EXPECT_EQ(folders.downloadsFolder(), platform::abbreviateWithTilde(a));
    folders.clearRecentDownloadFolders();
    EXPECT_EQ(folders.recentDownloadsFolders(), QStringList{platform::abbreviateWithTilde(a)});
}

TEST_F(Rules, TheMenuOffersFoldersThatAreThere) {
    const QString b = makeFolder(u"1/b"_s), a = makeFolder(u"2/a"_s);
    const QString gone = folder.filePath(u"gone"_s);
    defaults.set(app::settings::recentDownloadsFolders, QStringList{a, gone, b});
    app::FolderMenu plain = menu({.setting = a, .setStates = true});
    EXPECT_EQ(paths(plain), QStringList({b, a}));
    ASSERT_EQ(plain.selectedIndex, 1);
    EXPECT_TRUE(plain.items[1].isChecked);
    EXPECT_FALSE(plain.items[0].isChecked);
    EXPECT_EQ(plain.items[1].title, u"a"_s);
    defaults.set(app::settings::sortDownloadsFoldersByName, true);
    EXPECT_EQ(paths(menu({.setting = a})), QStringList({a, b}));

    // The folder in force is made again, and stands apart where it is none of the recent ones.
    plain = menu({.setting = gone});
    EXPECT_TRUE(QDir(gone).exists());
    const QString other = folder.filePath(u"other"_s);
    plain = menu({.setting = other});
    ASSERT_EQ(plain.selectedIndex, 4);
    EXPECT_EQ(plain.items[3].kind, Kind::Separator);
    EXPECT_EQ(plain.items[4].path, other);
}

TEST_F(Rules, TheMenuListsRules) {
    defaults.set(app::settings::recentDownloadsFolders, QStringList{makeFolder(u"a"_s)});
    const app::FolderMenuForm form{
        .setting = {}, .appendSpecialCases = true, .addExplanation = true};
    const auto kinds = [&](const app::FolderMenu& made) {
        std::vector<Kind> found;
        for (const FolderMenuItem& item : made.items) {
            found.push_back(item.kind);
        }
        return found;
    };
    book.addSpecialCase({{u"h.example"_s}, {}, {}, {}});
    const app::FolderMenu withRules = menu(form);
    EXPECT_THAT(kinds(withRules),
                testing::ElementsAre(Kind::Heading, Kind::Folder, Kind::PseudoSeparator,
                                     Kind::Other, Kind::ClearMenu, Kind::Separator, Kind::Heading,
                                     Kind::Rule, Kind::PseudoSeparator, Kind::DefineRule,
                                     Kind::RemoveAllRules, Kind::Separator, Kind::Explanation));
    EXPECT_EQ(withRules.items[7].title, u"h.example"_s);
    EXPECT_EQ(withRules.items[7].rule, book.specialCases()[0].toMap());
    EXPECT_TRUE(withRules.items[10].isAlternate);

    const app::FolderMenu forRule = menu({.setting = {}, .forSpecialCase = true});
    EXPECT_EQ(forRule.items[0].kind, Kind::DefaultDownloadsFolder);
    EXPECT_EQ(forRule.selectedIndex, 0);
}

}  // namespace
