#include "ui/history/history_menu.h"

#include <QApplication>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTest>
#include <QToolButton>
#include <QWindow>

#include "app/core_fixture.h"
#include "app/history/historian.h"
#include "app/settings.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// A history of the given names, newest first, of which every file is there whose name has a dot.
class HistoryMenuTest : public Core {
protected:
    HistoryMenuTest() {
        workspace.openURL = [this](const platform::Url& url) {
            opened.append(url.filePath());
            return true;
        };
    }
    ~HistoryMenuTest() override {
        menu.reset();
        historian.reset();
    }

    void open(const QStringList& names) {
        QVariantList entries;
        for (const QString& name : names) {
            const QString path = folder.filePath(name);
            if (name.contains(u'.')) {
                ASSERT_FALSE(platform::writeFileAtomically(path, "data"));
            }
            const qint64 daysAgo = entries.size();
            const auto date = QDateTime::fromMSecsSinceEpoch(
                static_cast<qint64>(main.clock.wall() * 1000) - daysAgo * 86'400'000);
            entries.prepend(QVariantMap{{u"Name"_s, name},
                                        {u"Original URL"_s, u"http://files.example/"_s + name},
                                        {u"Path"_s, path},
                                        {u"Date"_s, platform::archivedData(date)}});
        }
        ASSERT_FALSE(platform::writeFileAtomically(supportFolder() + u"/History.plist"_s,
                                                   platform::writePropertyList(entries)));
        historian = std::make_unique<app::DQHistorian>(supportFolder(), defaults, disks, main.loop);
        menu = std::make_unique<ui::HistoryMenu>(*historian, *controller, defaults,
                                                 ui::HistoryMenu::SearchField::Shown);
        menu->popup({});
        ASSERT_TRUE(QTest::qWaitForWindowExposed(menu.get()));
    }
    static QStringList titles(const QMenu& of) {
        QStringList titles;
        for (const QAction* item : of.actions()) {
            if (!item->isSeparator()) {
                // Without mnemonics and what keeps a text's direction apart from its neighbours'.
                static const QRegularExpression marks(u"[\u2068\u2069]|&(?=\\w)"_s);
                titles.append(item->text().remove(marks));
            }
        }
        return titles;
    }
    /// Without the search field.
    QStringList titles() const { return titles(*menu).mid(1); }
    QAction* item(const QString& title) const {
        for (QAction* item : menu->actions()) {
            if (item->text() == title) {
                return item;
            }
        }
        return nullptr;
    }
    void click(const QString& title) {
        const QPoint at = menu->actionGeometry(item(title)).center();
        // Until the pointer has moved, newer Qt takes a click for part of the one that opened the
        // menu.
        constexpr int motions = 10;
        for (int motion = 0; motion < motions; ++motion) {
            QTest::mouseMove(menu->windowHandle(), at + QPoint(motion % 2, 0));
        }
        QTest::mouseClick(menu->windowHandle(), Qt::LeftButton, {}, at);
    }
    static void type(Qt::Key key) {
        QWidget* popup = QApplication::activePopupWidget();
        QTest::keyClick(popup->focusWidget() ? popup->focusWidget() : popup, key);
    }
    QLineEdit& field() const { return *menu->findChild<QLineEdit*>(); }

    QStringList opened;
    std::unique_ptr<app::DQHistorian> historian;
    std::unique_ptr<ui::HistoryMenu> menu;
};

TEST_F(HistoryMenuTest, OffersWhatCanBeDoneWithAnEntry) {
    open({u"a & b.txt"_s, u"gone"_s});
    EXPECT_EQ(titles(), QStringList({u"a && b.txt"_s, u"gone"_s, u"Clear History"_s}));
    const QMenu* present = item(u"a && b.txt"_s)->menu();
    Q_EMIT const_cast<QMenu*>(present)->aboutToShow();
    QStringList offered = titles(*present);
    offered.removeAll(u"Open with"_s);
    EXPECT_EQ(offered.size(), 9);
    EXPECT_EQ(offered.first(), u"Open"_s);
    EXPECT_EQ(offered.last(), u"Download Again"_s);
    QMenu* absent = item(u"gone"_s)->menu();
    Q_EMIT absent->aboutToShow();
    EXPECT_EQ(titles(*absent), QStringList({u"Gone from "_s + folder.path(), u"Open in Browser"_s,
                                            u"Copy Original URL"_s, u"http://files.example/gone"_s,
                                            u"Download Again"_s}));
    item(u"Clear History"_s)->trigger();
    EXPECT_EQ(historian->numberOfItems(), 0);
    menu->popup({});
    EXPECT_EQ(titles(), QStringList{u"History is empty"_s});
    EXPECT_FALSE(field().isEnabled());
}

TEST_F(HistoryMenuTest, ChoosingAnEntryOpensItsFile) {
    open({u"a.txt"_s, u"gone"_s});
    click(u"gone"_s);
    EXPECT_TRUE(menu->isVisible()) << "its submenu shows";
    EXPECT_TRUE(opened.isEmpty());
    item(u"gone"_s)->menu()->close();
    click(u"a.txt"_s);
    EXPECT_EQ(opened, QStringList{folder.filePath(u"a.txt"_s)});
    EXPECT_FALSE(menu->isVisible());
}

TEST_F(HistoryMenuTest, SearchesAsTheUserTypes) {
    open({u"alpha.txt"_s, u"beta.txt"_s, u"files"_s});
    EXPECT_FALSE(menu->findChild<QToolButton*>(u"URL"_s)->isVisible());
    type(Qt::Key_B);
    type(Qt::Key_E);
    EXPECT_EQ(field().text(), u"be"_s);
    EXPECT_EQ(titles(), QStringList{u"beta.txt"_s});
    EXPECT_TRUE(menu->findChild<QToolButton*>(u"URL"_s)->isVisible());
    type(Qt::Key_Return);
    EXPECT_EQ(menu->activeAction(), item(u"beta.txt"_s));
    type(Qt::Key_Return);
    EXPECT_EQ(opened, QStringList{folder.filePath(u"beta.txt"_s)});

    menu->popup({});
    field().setText(u"files"_s);
    EXPECT_EQ(titles(), QStringList{u"files"_s});
    menu->findChild<QToolButton*>(u"URL"_s)->click();
    EXPECT_EQ(titles().size(), 3);
    EXPECT_EQ(defaults.get(app::settings::historySearchCriterion), u"URL"_s);
    field().setText(u"nowhere"_s);
    EXPECT_EQ(titles().first(), u"No Matches"_s);
    EXPECT_EQ(titles().size(), 5);
}

TEST_F(HistoryMenuTest, FillsADayWhenItOpens) {
    defaults.set(app::settings::numberOfTopLevelHistoryItems, qint64{1});
    open({u"a"_s, u"b"_s, u"c"_s});
    ASSERT_EQ(titles().size(), 4);
    EXPECT_EQ(titles()[1], u"Yesterday"_s);
    QMenu* day = item(u"Yesterday"_s)->menu();
    EXPECT_TRUE(day->isEmpty());
    day->popup({});
    EXPECT_EQ(titles(*day), QStringList{u"b"_s});
}

TEST_F(HistoryMenuTest, CutsShortWhatNobodyReads) {
    defaults.set(app::settings::numberOfTopLevelHistoryItems, qint64{100'000});
    QStringList names;
    for (int number = 0; number < 1000; ++number) {
        names.append(QString::number(number));
    }
    open(names);
    EXPECT_LT(titles().size(), 120);
    EXPECT_TRUE(titles()[titles().size() - 2].startsWith(u"("_s));
}

}  // namespace
