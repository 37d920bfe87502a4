#include "ui/window/main_window.h"

#include <QClipboard>
#include <QDialog>
#include <QDragEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QToolButton>
#include <set>

#include "app/commands/commands.h"
#include "app/core_fixture.h"
#include "app/queue/state_filter.h"
#include "app/settings.h"
#include "ui/list/download_list.h"
#include "ui/list/download_list_model.h"
#include "ui/settings.h"
#include "ui/text.h"
#include "ui/toolbar/toolbar.h"
#include "ui/window/desktop_front_end.h"
#include "ui/window/rubber_window.h"
#include "ui/window/scope_bar.h"
#include "ui/window/window_frame.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// The window with the core behind it; what the core asks goes to memory, what it shows to the
/// window.
class MainWindowTest : public Core {
protected:
    MainWindowTest() {
        defaults.set(app::settings::autoStart, false);
        window->show();
        desktop.setWindow(window.get(), controller.get());
    }
    ~MainWindowTest() override { desktop.setWindow(nullptr, nullptr); }

    void addAndShow(const QStringList& names) {
        add(names);
        desktop.frontEnd().list.reloadRows({});
    }
    template <typename Widget>
    Widget* find(const QString& name) {
        return window->findChild<Widget*>(name);
    }

    ui::DesktopFrontEnd desktop;
    app::Commands commands{{*controller, defaults, frontEnd.frontEnd()}};
    std::unique_ptr<ui::MainWindow> window = std::make_unique<ui::MainWindow>(commands);
};

void collect(const QMenu& menu, std::multiset<QString>& identifiers,
             std::multiset<QString>& shortcuts) {
    for (const QAction* item : menu.actions()) {
        if (item->isSeparator())
            continue;
        if (item->menu()) {
            collect(*item->menu(), identifiers, shortcuts);
            continue;
        }
        identifiers.insert(item->objectName());
        for (const QKeySequence& shortcut : item->shortcuts())
            shortcuts.insert(shortcut.toString());
    }
}

TEST_F(MainWindowTest, HasEveryCommandInItsMenusWithKeysOfItsOwn) {
    std::multiset<QString> identifiers, shortcuts;
    for (const QAction* item : window->menuBar()->actions())
        collect(*item->menu(), identifiers, shortcuts);
    for (int number = 0; number <= static_cast<int>(app::Command::Quit); ++number) {
        const auto command = static_cast<app::Command>(number);
        for (const auto& group : app::commandTags(command)) {
            for (const qint64 tag : group) {
                const auto* identifier = app::commandDescription(command, tag).identifier;
                EXPECT_TRUE(identifiers.contains(QString::fromLatin1(identifier))) << identifier;
            }
        }
    }
    for (const QString& shortcut : shortcuts)
        EXPECT_EQ(shortcuts.count(shortcut), 1U) << qPrintable(shortcut);
}

TEST_F(MainWindowTest, ObeysKeysAndSelection) {
    addAndShow({u"a"_s, u"b"_s, u"c"_s});
    ui::DQDownloadList& list = window->list();
    QTest::keyClick(&list, Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_Space);
    EXPECT_EQ(download(u"a"_s)->status(), engine::DQDownloadStatusQueued);
    EXPECT_EQ(download(u"b"_s)->status(), engine::DQDownloadStatusPaused);
    EXPECT_EQ(selected(), QStringList{u"a"_s});
    EXPECT_EQ(defaults.stringArrayForKey(u"Selected URLs"_s), QStringList{address(u"a"_s)});

    // A menu about another row leaves the selection alone.
    QTest::mouseClick(list.viewport(), Qt::RightButton, {},
                      list.visualRect(list.rows().index(2)).center());
    EXPECT_EQ(selected(), QStringList{u"a"_s});
}

TEST_F(MainWindowTest, KeepsTheToolbarAsArranged) {
    const auto buttons = [this] {
        QStringList shown;
        for (const QAction* action : window->toolbar().actions()) {
            if (QWidget* widget = window->toolbar().widgetForAction(const_cast<QAction*>(action)))
                shown.append(widget->objectName());
        }
        return shown;
    };
    EXPECT_EQ(buttons(), (QStringList{u"Queue/Pause"_s, u"Accelerate/Throttle"_s, u"More Actions"_s,
                                      QString(), u"Filter"_s}));
    defaults.set(ui::settings::mainToolbarWithThrottling,
                 QStringList{u"Add from Pasteboard"_s, u"Unheard Of"_s, u"Auto-Queue/Pause"_s,
                             u"Auto-Queue/Pause"_s});
    window = std::make_unique<ui::MainWindow>(commands);
    EXPECT_EQ(buttons(), (QStringList{u"Add from Pasteboard"_s, u"Auto-Queue/Pause"_s}));
    EXPECT_FALSE(commands.state(app::Command::Find, 1).isEnabled);
    defaults.set(ui::settings::mainToolbarWithThrottling, QStringList{u"More Actions"_s});
    main.settle();
    EXPECT_EQ(buttons(), QStringList{u"More Actions"_s}) << "changed elsewhere";
    defaults.set(ui::settings::mainToolbarWithThrottling,
                 QStringList{u"Add from Pasteboard"_s, u"Auto-Queue/Pause"_s});
    main.settle();

    auto* schedule = find<QToolButton>(u"schedule-queue"_s);
    QTest::mouseClick(schedule, Qt::LeftButton);
    EXPECT_TRUE(defaults.get(app::settings::scheduleQueue));
    EXPECT_TRUE(schedule->isChecked());
    defaults.set(app::settings::scheduleQueue, false);
    main.settle();
    EXPECT_FALSE(schedule->isChecked()) << "it follows changes made elsewhere";
}

TEST_F(MainWindowTest, TakesDropsAndNeverTheSource) {
    QMimeData links, prose, picture;
    links.setData(u"text/uri-list"_s, "http://d.example/d\r\n");
    prose.setText(u" \n"_s);
    picture.setData(u"image/png"_s, "x");
    QWidget* viewport = window->list().viewport();
    const auto enter = [&](const QMimeData& data) {
        QDragEnterEvent event({50, 50}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                              Qt::ShiftModifier);
        event.setDropAction(Qt::MoveAction);
        QApplication::sendEvent(viewport, &event);
        return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
    };
    EXPECT_EQ(enter(picture), Qt::IgnoreAction);
    EXPECT_EQ(enter(prose), Qt::IgnoreAction) << "there is nothing in it";
    QDropEvent vain({50, 50}, Qt::CopyAction, &prose, Qt::LeftButton, {});
    QApplication::sendEvent(viewport, &vain);
    EXPECT_FALSE(vain.isAccepted());
    EXPECT_EQ(enter(links), Qt::CopyAction) << "even with the key held that means to move";
    QDropEvent drop({50, 50}, Qt::CopyAction, &links, Qt::LeftButton, {});
    QApplication::sendEvent(viewport, &drop);
    EXPECT_TRUE(drop.isAccepted());
    main.settle();
    EXPECT_EQ(queue(), QStringList{u"d"_s});
}

TEST_F(MainWindowTest, ShowsWhatItDidNotUnderstandAndWhatItHas) {
    controller->openText(u"Hi Anna,\nhttp://a.example/a\nwww.b.example/b"_s);
    auto* panel = find<QDialog>(u"openURLPanel"_s);
    ASSERT_TRUE(panel && panel->isVisible());
    const auto* text = panel->findChild<QPlainTextEdit*>(u"openURLTextView"_s);
    EXPECT_EQ(text->toPlainText(), u"Hi Anna,\nhttps://www.b.example/b"_s);
    const auto* note = panel->findChild<QLabel*>(u"openURLNote"_s);
    EXPECT_TRUE(note->isVisible());
    EXPECT_FALSE(note->text().isEmpty());
    controller->openText(u"Bye"_s);
    EXPECT_TRUE(text->toPlainText().endsWith(u"/b\nBye"_s)) << "nothing is lost";
    panel->reject();

    controller->openText(u"http://a.example/b"_s);
    controller->setFilterText(u"nothing like it"_s);
    desktop.frontEnd().list.reloadRows({});
    controller->openText(u"http://a.example/a"_s);
    EXPECT_EQ(controller->selectedDownloads(), app::Downloads{controller->downloads()[0]});
    EXPECT_FALSE(controller->isFiltering());
    EXPECT_EQ(window->statusBar()->currentMessage(), u"Already in the list"_s);

    commands.perform(app::Command::Remove);
    controller->setFilterText(u"nothing like it"_s);
    commands.perform(app::Command::Undo);
    EXPECT_FALSE(controller->isFiltering()) << "what came back is seen";
    EXPECT_EQ(selected(), QStringList{u"a"_s});
}

TEST_F(MainWindowTest, AddsWhatWasTypedJustNow) {
    commands.perform(app::Command::OpenURL);
    auto* panel = find<QDialog>(u"openURLPanel"_s);
    ASSERT_TRUE(panel && QTest::qWaitForWindowActive(panel));
    auto* text = panel->findChild<QPlainTextEdit*>(u"openURLTextView"_s);
    QTest::keyClicks(text, u"http://a.example/typed"_s);
    QTest::keyClick(text, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(panel->isVisible());
    main.settle();
    EXPECT_EQ(queue(), QStringList{u"typed"_s});
}

TEST_F(MainWindowTest, LosesNothingThatIsBeingEntered) {
    QSignalSpy ended(controller.get(), &app::DQMainController::terminated);
    const auto open = [this] {
        auto* panel = find<QDialog>(u"openURLPanel"_s);
        return panel && panel->isVisible() ? panel : nullptr;
    };
    const auto text = [&] { return open()->findChild<QPlainTextEdit*>(u"openURLTextView"_s); };
    commands.perform(app::Command::OpenURL);
    ASSERT_TRUE(open() && QTest::qWaitForWindowActive(open()));
    QTest::keyClicks(text(), u"http://a.example/typed"_s);
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible() && open());
    EXPECT_TRUE(window->statusBar()->currentMessage().contains(open()->windowTitle()));
    EXPECT_TRUE(ended.isEmpty());

    // Who means to quit may; the next start has the text.
    commands.perform(app::Command::Quit);
    EXPECT_EQ(ended.size(), 1);
    open()->close();
    window = std::make_unique<ui::MainWindow>(commands);
    window->show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return open() != nullptr; }));
    EXPECT_EQ(text()->toPlainText(), u"http://a.example/typed"_s);

    // What was cancelled is gone, and holds up nothing.
    open()->reject();
    EXPECT_TRUE(window->close());
    window = std::make_unique<ui::MainWindow>(commands);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    EXPECT_FALSE(open());
    addAndShow({u"a"_s});
    controller->selectDownloads(controller->downloads());
    commands.perform(app::Command::ChangeAddress);
    auto* panel = find<QDialog>(u"addressPanel"_s);
    ASSERT_TRUE(panel);
    QTest::keyClicks(panel->findChild<QLineEdit*>(), u"http://b.example/other"_s);
    EXPECT_FALSE(window->close()) << "another entry";
}

TEST_F(MainWindowTest, AddsToWhatIsBeingTypedAndReplacesNothing) {
    const auto text = [this] { return find<QPlainTextEdit>(u"openURLTextView"_s); };
    const QString typed = u"http://a.example/typed"_s, copied = u"http://b.example/1\nhttp://2/"_s;
    QGuiApplication::clipboard()->setText(u" \n"_s);
    commands.perform(app::Command::OpenURL);
    ASSERT_TRUE(text() && QTest::qWaitForWindowActive(text()->window()));
    QTest::keyClicks(text(), typed);
    commands.perform(app::Command::OpenURLFromPasteboard);
    EXPECT_EQ(text()->toPlainText(), typed);
    QGuiApplication::clipboard()->setText(QString(copied).replace(u"\n"_s, u"\r\n"_s));
    for (int times = 0; times < 2; ++times) {
        commands.perform(app::Command::OpenURL);
        EXPECT_EQ(text()->toPlainText(), typed + u'\n' + copied);
    }
    QTest::keyClicks(text(), u"x"_s);
    EXPECT_EQ(text()->toPlainText(), typed + u"\nx"_s) << "a proposal is typed over";
    text()->undo();
    text()->undo();
    EXPECT_EQ(text()->toPlainText(), typed);
    find<QDialog>(u"openURLPanel"_s)->reject();
    commands.perform(app::Command::OpenURL);
    EXPECT_EQ(text()->toPlainText(), copied) << "what was cancelled is gone";
}

TEST_F(MainWindowTest, PutsWhatWasKeptBeforeWhatItIsStartedWith) {
    const QString kept = u"http://a.example/kept"_s, refused = u"Hi Anna,"_s;
    defaults.set(ui::settings::unfinishedAddresses, kept);
    window = std::make_unique<ui::MainWindow>(commands);
    controller->openText(refused);
    auto* text = find<QPlainTextEdit>(u"openURLTextView"_s);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->toPlainText(), kept + u'\n' + refused);
    EXPECT_EQ(defaults.get(ui::settings::unfinishedAddresses), text->toPlainText());
}

TEST_F(MainWindowTest, FadesOnceHoweverThatIsCutShort) {
    app::Presence& presence = desktop.frontEnd().presence;
    const std::function<void()> cuts[] = {
        [this] { window->close(); }, [&] { presence.showDownloadWindow(true); },
        [&] { presence.hide(); }, [&] { presence.fadeDownloadWindow(); }, [] {}};
    for (const auto& cut : cuts) {
        int ends = 0;
        window->showNormal();
        presence.fadeDownloadWindow();
        ASSERT_TRUE(window->frame().isFading());
        desktop.afterFading(*window, [&] { ++ends; });
        cut();
        EXPECT_TRUE(QTest::qWaitFor([&] { return ends > 0; })) << &cut - cuts;
        EXPECT_FALSE(window->frame().isFading());
        window->frame().stopAnimation();
        EXPECT_EQ(ends, 1) << &cut - cuts;
        window->frame().disconnect(window.get());
    }
}

TEST(WindowFrame, ComesBackOntoTheScreensThereAre) {
    const QList<QRect> screens{{0, 30, 800, 570}, {800, 30, 1000, 770}};
    const struct {
        QRect stored, shown;
    } cases[] = {
        {{100, 100, 300, 200}, {100, 100, 300, 200}},
        {{900, 100, 300, 200}, {900, 100, 300, 200}},
        {{700, 100, 300, 200}, {800, 100, 300, 200}},
        {{2500, 400, 300, 200}, {1500, 400, 300, 200}},
        {{-900, -50, 300, 200}, {0, 30, 300, 200}},
        {{900, 700, 1200, 900}, {800, 30, 1000, 770}},
    };
    for (const auto& expected : cases)
        EXPECT_EQ(ui::frameOnScreens(expected.stored, screens), expected.shown)
            << expected.stored.x() << ", " << expected.stored.y();
}

TEST(RubberWindow, IsAsHighAsItsRowsAndTheScreenAllow) {
    const ui::RubberMeasures one{40, 40, 1, false, 100, 180, 400};
    const struct {
        int contentHeight, numberOfRows;
        bool isCollapsing;
        int roomHeight, height;
    } cases[] = {
        {0, 0, false, 400, 140},    {40, 1, false, 60, 140}, {120, 3, false, 400, 220},
        {800, 20, false, 400, 400}, {80, 2, false, 90, 180}, {30, 2, true, 400, 140 + 40},
        {70, 2, true, 400, 180},
    };
    for (const auto& expected : cases) {
        ui::RubberMeasures measures = one;
        measures.contentHeight = expected.contentHeight;
        measures.numberOfRows = expected.numberOfRows;
        measures.isCollapsing = expected.isCollapsing;
        measures.roomHeight = expected.roomHeight;
        EXPECT_EQ(ui::rubberHeight(measures), expected.height)
            << expected.numberOfRows << " rows of " << expected.contentHeight;
    }
    EXPECT_EQ(ui::correctedWindowHeight(333, 100, 40), 300);
    EXPECT_EQ(ui::correctedWindowHeight(90, 100, 40), 90);
}

TEST_F(MainWindowTest, DetailsComeUpBelowTheRowThatTheyAreAbout) {
    addAndShow(numbered(9));
    desktop.frontEnd().list.selectRows({7});
    const ui::DQDownloadList& list = window->list();
    const auto isSeen = [&list] {
        return list.viewport()->rect().contains(list.visualRect(list.rows().index(7)));
    };
    ASSERT_TRUE(isSeen());
    commands.perform(app::Command::ToggleDetails);
    main.settle();
    ASSERT_LT(list.viewport()->height(), 8 * list.rowHeight());
    EXPECT_TRUE(QTest::qWaitFor(isSeen));
}

TEST_F(MainWindowTest, DetailsOfferWhatCanBeDoneWithTheRowsThatAreSelectedAndSeen) {
    addAndShow({u"a"_s, u"b"_s});
    commands.perform(app::Command::ToggleDetails);
    auto* pane = find<QWidget>(u"detailsPane"_s);
    ASSERT_TRUE(pane && pane->isVisible());
    const auto texts = [pane](bool enabled) {
        QStringList found;
        for (const QToolButton* button : pane->findChildren<QToolButton*>()) {
            if (!button->text().isEmpty() && button->isEnabled() == enabled)
                found.append(button->text());
        }
        return found;
    };
    controller->selectDownloads({});
    EXPECT_EQ(texts(true), QStringList());
    controller->selectDownloads(controller->downloads());
    EXPECT_TRUE(texts(true).contains(ui::translated("Copy Addresses")));
    controller->setFilterText(u"a"_s);
    EXPECT_TRUE(texts(true).contains(ui::translated("Copy Address"))) << "one is left of them";
    controller->setFilterText({});
    controller->selectDownloads({controller->downloads().front()});
    EXPECT_TRUE(texts(true).contains(ui::translated("Copy Address")));
    EXPECT_TRUE(pane->findChild<QWidget*>(u"facts"_s)->isVisible());
    controller->setStateFilter({app::RowState::Done, {}});
    EXPECT_EQ(texts(true), QStringList());
    EXPECT_FALSE(pane->findChild<QWidget*>(u"facts"_s)->isVisible()) << "its row is hidden";
    // No wider than the words are in any language.
    pane->resize(200, pane->height());
    int bottom = 0;
    for (const QToolButton* button : pane->findChildren<QToolButton*>()) {
        if (!button->text().isEmpty())
            bottom = std::max(bottom, button->geometry().bottom());
    }
    EXPECT_GT(bottom, 2 * pane->findChild<QToolButton*>()->height());
}

}  // namespace
