#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QStandardItemModel>
#include <QStandardPaths>
#include <QTest>
#include <QTextEdit>
#include <QTimeEdit>
#include <QTimer>
#include <QToolBar>

#include "app/core_fixture.h"
#include "app/settings.h"
#include "engine/settings.h"
#include "engine/workers/throttle.h"
#include "http/http_session.h"
#include "links/pages/download_page_rule_store.h"
#include "platform/session/login_item.h"
#include "ui/rules/folder_selector.h"
#include "ui/schedule/schedule_settings.h"
#include "ui/schedule/throttle_field.h"
#include "ui/settings/settings_window.h"

using namespace Qt::Literals::StringLiterals;

namespace {

class SettingsWindowTest : public Core {
protected:
    SettingsWindowTest() { window = std::make_unique<ui::SettingsWindow>(*controller, defaults); }
    ~SettingsWindowTest() override { window.reset(); }

    template <typename Control>
    Control* control(const char16_t* key) const {
        return window->findChild<Control*>(QString::fromUtf16(key));
    }
    /// As another program would.
    void store(const char16_t* key, const QVariant& value) {
        defaults.setObject(QString::fromUtf16(key), value);
        main.settle();
    }
    static void choose(QComboBox& popup, int index) {
        popup.setCurrentIndex(index);
        Q_EMIT popup.activated(index);
    }

    http::HTTPSession session{main.clock};
    std::unique_ptr<ui::SettingsWindow> window;
};

TEST_F(SettingsWindowTest, SwitchesStoreAndFollowTheirKeys) {
    const std::pair<const char16_t*, bool> switches[] = {
        {u"Auto-Start", true},
        {u"Instant Duplicate Check", true},
        {u"Download Folder Prompt Allows Filename Editing", false},
        {u"Acceleration: Enabled", false},
        {u"Throttle: Enabled", false},
        {u"Auto-Resume", false},
        {u"Auto-Clear Successes", false},
        {u"Auto-Clear Lemons", false},
        {u"Auto-Quit", false},
        {u"History Of Complete Downloads", true},
        {u"Clear History On Quit", false},
        {u"Rubber Window", false},
        {u"Useless Animations", true},
        {u"Store Source URL In Spotlight Comment", false},
        {u"Skip Redirecting Services", true},
    };
    for (const auto& [key, byDefault] : switches) {
        const QString name = QString::fromUtf16(key);
        auto* box = control<QCheckBox>(key);
        ASSERT_NE(box, nullptr) << name.toStdString();
        EXPECT_EQ(box->isChecked(), byDefault) << name.toStdString();
        box->click();
        EXPECT_EQ(box->isChecked(), !byDefault) << name.toStdString();
        EXPECT_EQ(defaults.storedValues().value(name), QVariant(!byDefault)) << name.toStdString();
        store(key, {});
        EXPECT_EQ(box->isChecked(), byDefault) << name.toStdString();
    }
}

struct Popup {
    const char16_t* key;
    qint64 byDefault;
    std::vector<qint64> choices;
    qint64 odd, shown;  ///< What is shown for a stored value that is none of the choices.
};

TEST_F(SettingsWindowTest, PopupsStoreAndFollowTheirKeys) {
    const std::vector<qint64> limits{1, 2, 3, 4, 5, 6, 7, 8, 9, 0};
    const Popup popups[] = {
        {u"Downloads Folder: Subdivision Format: Date", 0, {0, 1}, 7, 0},
        {u"Number Of Concurrent Downloads", 4, limits, 12, 0},
        {u"Number Of Concurrent Downloads Per Host", 2, limits, -3, 0},
        {u"Acceleration: Channels", 4, {2, 3, 4, 5, 6, 7, 8, 9}, 40, 9},
        {u"Auto-Retreat", 0, {0, 1, 2}, 5, 2},
        {u"Success Bounce Mode", 2, {0, 1, 2}, 3, 2},
        {u"Success Heartbeat Mode", 1, {0, 1, 2}, -1, 0},
        {u"Quit Procedure", 0, {0, 1}, 2, 1},
        {u"Number Of History Items", 100, {0, 10, 25, 50, 100, 250, 500, 1000, -1}, 123, 123},
        {u"Number Of Top-Level History Items", 10, {5, 10, 15, 20, 30}, 12, 12},
        {u"Full Screen Mode Behavior", 1, {1, 0}, 2, 0},
        {u"Intermediates Location", 1, {1, 0}, 3, 1},
        {u"Filename Extension Policy", 1, {0, 1, 2, 3}, 9, 0},
        {u"Last-Modified Header Adoption", 0, {0, 1}, 4, 1},
    };
    for (const Popup& row : popups) {
        const QString name = QString::fromUtf16(row.key);
        auto* popup = control<QComboBox>(row.key);
        ASSERT_NE(popup, nullptr) << name.toStdString();
        EXPECT_EQ(popup->currentData().toLongLong(), row.byDefault) << name.toStdString();
        std::vector<qint64> choices;
        for (int index = 0; index < popup->count(); ++index) {
            if (popup->itemData(index).isValid()) {
                choices.push_back(popup->itemData(index).toLongLong());
                choose(*popup, index);
                EXPECT_EQ(defaults.storedValues().value(name), choices.back())
                    << name.toStdString();
            }
        }
        EXPECT_EQ(choices, row.choices) << name.toStdString();
        store(row.key, row.odd);
        EXPECT_EQ(popup->currentData().toLongLong(), row.shown) << name.toStdString();
        store(row.key, {});
        EXPECT_EQ(popup->currentData().toLongLong(), row.byDefault) << name.toStdString();
        EXPECT_EQ(popup->findData(123), -1) << "only while it is in force";
    }
}

TEST_F(SettingsWindowTest, ClosingTheWindowIsOneChoiceOfThreeInTwoSettings) {
    auto* popup = control<QComboBox>(u"Quit On Close");
    ASSERT_EQ(popup->count(), 3);
    const std::pair<bool, bool> stored[] = {{false, false}, {true, true}, {true, false}};
    for (int index = 0; index < 3; ++index) {
        choose(*popup, index);
        EXPECT_EQ(defaults.boolForKey(u"Quit On Close"_s), stored[index].first);
        EXPECT_EQ(defaults.boolForKey(u"Quit On Close: Clean Slate Only"_s), stored[index].second);
    }
    store(u"Quit On Close: Clean Slate Only", true);
    EXPECT_EQ(popup->currentIndex(), 1);
}

TEST_F(SettingsWindowTest, TextIsStoredTrimmedAndRemovedWhenEmpty) {
    auto* dateUsed = control<QComboBox>(u"Downloads Folder: Subdivision Format: Date");
    EXPECT_TRUE(dateUsed->isHidden());
    for (const char16_t* key :
         {u"Custom User Agent", u"Downloads Folder: Subdivision Format (Rules)",
          u"Downloads Folder: Subdivision Format (Default)"}) {
        const QString name = QString::fromUtf16(key);
        auto* field = control<QLineEdit>(key);
        ASSERT_NE(field, nullptr) << name.toStdString();
        QTest::keyClicks(field, u" yyyy "_s);
        main.settle();
        EXPECT_EQ(field->text(), u" yyyy "_s) << "typing goes on";
        EXPECT_EQ(defaults.storedValues().value(name), u"yyyy"_s);
        store(key, u"MM"_s);
        EXPECT_EQ(field->text(), u"MM"_s);
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        EXPECT_FALSE(defaults.hasValueForKey(name));
    }
    store(u"Downloads Folder: Subdivision Format (Rules)", u"yyyy"_s);
    EXPECT_FALSE(dateUsed->isHidden());
}

TEST_F(SettingsWindowTest, LimitPerHostStaysWithinTheOverallOne) {
    auto* popup = control<QComboBox>(u"Number Of Concurrent Downloads Per Host");
    const auto isEnabled = [popup](qint64 value) {
        return qobject_cast<QStandardItemModel*>(popup->model())
            ->item(popup->findData(value))
            ->isEnabled();
    };
    store(u"Number Of Concurrent Downloads Per Host", 6);
    EXPECT_EQ(popup->currentData(), 4);
    EXPECT_TRUE(isEnabled(4));
    EXPECT_FALSE(isEnabled(5));
    EXPECT_FALSE(isEnabled(0));
    store(u"Number Of Concurrent Downloads", 0);
    EXPECT_EQ(popup->currentData(), 6);
    EXPECT_TRUE(isEnabled(9));
    EXPECT_TRUE(isEnabled(0));
}

TEST_F(SettingsWindowTest, OffersFoldersAndRemembersTheChosenOne) {
    const QString chosen = folder.filePath(u"chosen"_s);
    QDir().mkpath(chosen);
    auto* selector = control<ui::FolderSelector>(u"Downloads Folder");
    store(u"Recent Downloads Folders", QStringList{chosen});
    const int index = selector->findData(chosen, Qt::ToolTipRole);
    ASSERT_GE(index, 0);
    choose(*selector, index);
    EXPECT_EQ(defaults.stringForKey(u"Downloads Folder"_s), chosen);
    main.settle();
    EXPECT_EQ(selector->folder(), chosen);
    QTest::keyClick(selector, Qt::Key_End);
    EXPECT_TRUE(selector->view()->isVisible());
    selector->hidePopup();
    EXPECT_EQ(selector->folder(), chosen) << "leafing through chooses nothing";
}

TEST_F(SettingsWindowTest, ShowsTheSectionsThatTheUserWants) {
    const auto shown = [this] {
        QStringList titles;
        for (const QAction* action : window->findChild<QToolBar*>()->actions()) {
            if (action->isVisible()) {
                titles.append(action->text());
            }
        }
        return titles;
    };
    const QStringList usual{u"General"_s, u"Speed"_s,    u"Schedule"_s, u"Behaviors"_s,
                            u"History"_s, u"Advanced"_s, u"Updates"_s};
    EXPECT_EQ(shown(), usual);
    window->showPreferencesSection(u"Experimental"_s);
    EXPECT_EQ(shown(), usual + QStringList{u"Experimental"_s}) << "as long as it is current";
    window->showPreferencesSection(u"No such section"_s);
    EXPECT_EQ(window->currentSection(), u"General"_s);
    EXPECT_EQ(shown(), usual);
    store(u"Preferences Toolbar 3016 (Independent)", QStringList{u"Speed"_s, u"Experimental"_s});
    EXPECT_EQ(shown(), (QStringList{u"General"_s, u"Speed"_s, u"Experimental"_s}));
}

TEST_F(SettingsWindowTest, TheFilterForBrowsersIsStoredAsTypedAndGreyUnlessItCounts) {
    window->showPreferencesSection(u"Advanced"_s);
    auto* field = window->findChild<QLineEdit*>(u"safariExtensionFilterField"_s);
    ASSERT_NE(field, nullptr);
    const QPalette usual = field->parentWidget()->palette();
    const QColor normal = usual.color(QPalette::Active, QPalette::Text);
    const QColor grey = usual.color(QPalette::Disabled, QPalette::Text);
    ASSERT_NE(normal, grey);
    const auto colour = [&] { return field->palette().color(QPalette::Active, QPalette::Text); };
    EXPECT_EQ(colour(), grey) << "empty";
    QString typed;
    for (const auto& [keys, expected] : {std::pair{u"(zip"_s, grey}, {u")$ "_s, normal}}) {
        QTest::keyClicks(field, keys);
        typed += keys;
        EXPECT_EQ(
            defaults.suite(app::settings::sharedDomain).stringForKey(u"Safari Extension Filter"_s),
            typed);
        EXPECT_EQ(colour(), expected) << typed.toStdString();
    }
    EXPECT_FALSE(defaults.hasValueForKey(u"Safari Extension Filter"_s)) << "not our own settings";
}

TEST_F(SettingsWindowTest, RulesForDownloadPagesAreStoredAsTypedAndFollowed) {
    const char16_t* key = u"Download Page Rules";
    const QString name = QString::fromUtf16(key);
    auto* editor = control<QTextEdit>(key);
    const QString builtIn = editor->toPlainText();
    EXPECT_EQ(builtIn, links::defaultDownloadPageRuleText());
    EXPECT_FALSE(defaults.hasValueForKey(name));

    editor->selectAll();
    editor->insertPlainText(u"[1]"_s);
    EXPECT_EQ(defaults.stringForKey(name), u"[1]"_s) << "valid or not";
    editor->undo();
    EXPECT_EQ(editor->toPlainText(), builtIn);
    store(key, u"  {\"a\": 2}"_s);
    EXPECT_EQ(editor->toPlainText(), u"  {\"a\": 2}"_s);
    editor->moveCursor(QTextCursor::End);
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_EQ(editor->toPlainText(), u"  {\"a\": 2}\n  "_s) << "indented like the line before";
    editor->selectAll();
    QTest::keyClick(editor, Qt::Key_Delete);
    EXPECT_EQ(editor->toPlainText(), builtIn);
    EXPECT_FALSE(defaults.hasValueForKey(name));
}

TEST_F(SettingsWindowTest, StartsAtLoginOnlyAsLongAsTheUserWants) {
    const platform::LoginItem item;
    auto* box = control<QCheckBox>(u"loginItemSwitch");
    for (const bool isOn : {true, false}) {
        box->click();
        EXPECT_EQ(box->isChecked(), isOn);
        EXPECT_EQ(item.isEnabled(), isOn);
    }
}

TEST_F(SettingsWindowTest, SaysPlainlyThatItCannotStartAtLogin) {
    const QString autostart =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/autostart"_s;
    QDir(autostart).removeRecursively();
    ASSERT_EQ(platform::writeFileAtomically(autostart, "in the way"), std::nullopt);
    auto* box = control<QCheckBox>(u"loginItemSwitch");
    QString told;
    QTimer::singleShot(0, box, [&told] {
        auto* alert = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(alert, nullptr);
        told = alert->text();
        alert->close();
    });
    box->click();
    EXPECT_TRUE(told.contains(u"/autostart/com.tarnworks.Orlop.desktop"_s)) << told.toStdString();
    EXPECT_TRUE(told.endsWith(u"A file lies where its folder should be."_s)) << told.toStdString();
    EXPECT_FALSE(box->isChecked());
    QFile::remove(autostart);
}

class ScheduleWidgetsTest : public Core {
protected:
    http::HTTPSession session{main.clock};
};

TEST_F(ScheduleWidgetsTest, TimesShowWhileTheirSwitchesAreOn) {
    ui::ScheduleSettings page(*controller, defaults, nullptr);
    auto* pausing = page.findChild<QCheckBox*>(u"scheduledPausingSwitch"_s);
    auto* radical = page.findChild<QCheckBox*>(u"scheduledPausingRadicalSwitch"_s);
    auto* time = page.findChild<QTimeEdit*>(u"scheduledPausingTimePicker"_s);
    EXPECT_FALSE(time->isVisibleTo(&page));
    pausing->click();
    EXPECT_TRUE(defaults.get(app::settings::schedulePause));
    EXPECT_TRUE(time->isVisibleTo(&page));
    EXPECT_EQ(time->time(), QTime(6, 0));
    time->setTime({7, 30, 5});
    EXPECT_EQ(app::scheduleTime(defaults, app::scheduledPausingTime()), QTime(7, 30, 5));
    radical->click();
    EXPECT_TRUE(defaults.get(app::settings::schedulePauseRadical));

    app::setScheduleTime(defaults, {22, 15}, app::scheduledPausingTime());
    EXPECT_EQ(time->time(), QTime(22, 15)) << "changed elsewhere";
    defaults.set(app::settings::schedulePause, false);
    EXPECT_FALSE(pausing->isChecked());
    EXPECT_TRUE(radical->isHidden());
}

TEST_F(ScheduleWidgetsTest, TheLimitTypedCountsAfterAPauseOrOnLeaving) {
    engine::Throttle throttle(defaults);
    throttle.setThrottled(false);
    ui::ThrottleField field(defaults, throttle, nullptr);
    EXPECT_FALSE(field.isEnabled());
    throttle.setThrottled(true);
    EXPECT_TRUE(field.isEnabled());
    EXPECT_EQ(field.currentText(), u"100"_s);
    field.show();
    field.setEditText(u"2"_s);
    field.setEditText(u"25x"_s);
    EXPECT_EQ(throttle.throttleLimit(), 100'000) << "typing goes on";
    EXPECT_TRUE(QTest::qWaitFor([&] { return throttle.throttleLimit() == 1000; }, 10'000));
    EXPECT_EQ(field.currentText(), u"1"_s);
    field.setEditText(u"250"_s);
    field.hide();
    EXPECT_EQ(throttle.throttleLimit(), 250'000);
    throttle.setThrottled(false);
}

TEST_F(SettingsWindowTest, TheModeNeedsADesktopThatShowsStatusItems) {
    auto* selector = control<QComboBox>(u"Application Mode");
    ASSERT_TRUE(selector);
    const auto mode = [this] { return defaults.get(app::settings::applicationMode); };
    frontEnd.showsStatusItems = false;
    choose(*selector, 1);
    EXPECT_EQ(mode(), 0);
    EXPECT_EQ(selector->currentIndex(), 0);
    ASSERT_EQ(frontEnd.alerts.size(), 1U);
    EXPECT_EQ(frontEnd.alerts[0].title, u"Not now..."_s);
    EXPECT_EQ(frontEnd.alerts[0].defaultButton, u"Understood"_s);
    frontEnd.showsStatusItems = true;
    choose(*selector, 2);
    EXPECT_EQ(mode(), 2);
    frontEnd.showsStatusItems = false;
    choose(*selector, 0);
    EXPECT_EQ(mode(), 0) << "back is always possible";
    EXPECT_EQ(frontEnd.alerts.size(), 1U);
    store(u"Application Mode", 7);
    EXPECT_EQ(selector->currentData().toInt(), 2);
}

}  // namespace
