#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QToolButton>

#include <QTreeWidget>

#include <map>
#include "app/commands/context_menu.h"
#include "app/core_fixture.h"
#include "app/history/historian.h"
#include "app/settings.h"
#include "engine/workers/user_agent.h"
#include "help/help_manager.h"
#include "http/http_session.h"
#include "ui/authentication/authentication_panel.h"
#include "ui/commands/menu_items.h"
#include "ui/help/help_window.h"
#include "ui/language.h"
#include "ui/log/log_window.h"
#include "ui/log/problem_report_dialog.h"
#include "ui/settings/settings_window.h"
#include "ui/window/desktop_front_end.h"
#include "ui/window/desktop_windows.h"
#include "ui/window/main_window.h"
#include "ui/window/url_panel.h"

using namespace Qt::Literals::StringLiterals;
using app::Command;
using testing::IsEmpty;

namespace {

/// Opens every window and every menu of the program, one after another.
class AllWindows : public Core {
protected:
    using Look = std::function<void(QWidget& window)>;

    AllWindows() {
        defaults.set(app::settings::autoStart, false);
        app::installHistorian(&historian);
        add({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
        end(*download(u"c"_s), engine::DQDownloadStatusAborted);
        end(*download(u"d"_s), engine::DQDownloadStatusAborted);
    }
    ~AllWindows() override { app::installHistorian(nullptr); }

    void visit(const Look& look) {
        ui::DesktopFrontEnd desktop;
        ui::DesktopWindows windows(*controller, desktop);
        app::Commands& commands = windows.commands();
        desktop.showDownloadWindow(false);
        auto* mainWindow = window<ui::MainWindow>();
        look(*mainWindow);
        for (const QAction* action : mainWindow->menuBar()->actions())
            visitMenu(*action->menu(), look);
        for (const app::Downloads& downloads :
             {app::Downloads{}, controller->downloads(), {download(u"a"_s)}, {download(u"c"_s)}}) {
            QMenu menu;
            ui::addMenuItems(menu, app::contextMenu(commands, downloads));
            visitMenu(menu, look);
        }
        commands.perform(Command::OpenURL);
        look(*mainWindow->findChild<ui::URLPanel*>());
        controller->selectDownloads({download(u"a"_s)});
        for (const auto& [command, panel] :
             {std::pair(Command::ChangeAddress, u"addressPanel"_s),
              std::pair(Command::Verify, u"checksumPanel"_s),
              std::pair(Command::LimitSpeed, u"speedLimitPanel"_s)}) {
            commands.perform(command);
            auto* shown = mainWindow->findChild<QDialog*>(panel);
            ASSERT_NE(shown, nullptr) << panel.toStdString();
            look(*shown);
            QTest::keySequence(shown, QKeySequence::Close);
            EXPECT_FALSE(shown->isVisible()) << panel.toStdString();
        }
        commands.perform(Command::ShowHelp);
        look(*mainWindow->findChild<ui::HelpWindow*>());
        visitLog(commands, look);
        commands.perform(Command::ReportProblem);
        look(*mainWindow->findChild<ui::ProblemReportDialog*>());
        visitSettings(commands, look);
        for (const Command command : {Command::CustomizeToolbar, Command::ShowAbout})
            visitModal([&] { commands.perform(command); }, look);
        visitModal([&] { commands.perform(Command::CancelAll, 1); }, look);
        visitModal([&] { commands.editRule({}); }, look);
        visitModal([&] { commands.editRule({{u"Extensions"_s, QVariantList{u"zip"_s}}}); }, look);
        visitAuthentication(look);
    }

private:
    template <typename Window>
    static Window* window() {
        for (QWidget* candidate : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<Window*>(candidate))
                return found;
        }
        return nullptr;
    }

    static void visitMenu(QMenu& menu, const Look& look) {
        Q_EMIT menu.aboutToShow();
        look(menu);
        for (const QAction* action : menu.actions()) {
            if (action->menu())
                visitMenu(*action->menu(), look);
        }
    }

    static void visitLog(const app::Commands& commands, const Look& look) {
        commands.perform(Command::ToggleDebugLogging);
        auto* log = window<ui::LogWindow>();
        ASSERT_NE(log, nullptr);
        look(*log);
        look(*log->findChild<QMenu*>());
        log->close();
    }

    static void visitSettings(const app::Commands& commands, const Look& look) {
        commands.perform(Command::ShowPreferences);
        auto* settings = window<ui::SettingsWindow>();
        for (const char* section :
             {"General", "Speed", "Schedule", "Feedback", "History", "Advanced", "Experimental"}) {
            settings->showPreferencesSection(QString::fromLatin1(section));
            look(*settings);
        }
        settings->close();
    }

    static void visitAuthentication(const Look& look) {
        struct Client final : app::AuthenticationPrompt::Client {
            void applyCredentialsFromDialog(const app::AuthenticationAnswer&) override {}
            void cancelDialog() override {}
        } client;
        ui::AuthenticationPanel panel;
        ASSERT_TRUE(panel.show({{}, {}, {}, false, true, true}, client));
        look(panel);
        panel.close();
    }

    static void visitModal(const std::function<void()>& open, const Look& look) {
        QTimer::singleShot(0, qApp, [look] {
            QWidget* modal = QApplication::activeModalWidget();
            ASSERT_NE(modal, nullptr);
            look(*modal);
            modal->close();
        });
        open();
    }

    http::HTTPSession session{main.clock};
    app::DQHistorian historian{supportFolder(), defaults, disks, main.loop};
};

/// What of a window or a menu its user reads, but for names and addresses.
QStringList textsOf(const QWidget& window) {
    QStringList texts{window.windowTitle()};
    for (const QAction* action : window.actions()) {
        if (action->icon().isNull() && !action->text().contains(u"://"_s))
            texts.append(action->text());
    }
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(&window) || widget->inherits("QMenu"))
            continue;
        texts += {widget->toolTip(), widget->accessibleName()};
        if (const auto* label = qobject_cast<const QLabel*>(widget))
            texts.append(label->text());
        if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
            texts.append(button->text());
        if (const auto* field = qobject_cast<const QLineEdit*>(widget))
            texts.append(field->placeholderText());
        if (const auto* field = qobject_cast<const QPlainTextEdit*>(widget))
            texts.append(field->placeholderText());
        if (const auto* browser = qobject_cast<const QTextBrowser*>(widget);
            browser && !widget->inherits("ui::HelpBrowser"))
            texts.append(browser->toPlainText());
        if (const auto* tree = qobject_cast<const QTreeWidget*>(widget)) {
            for (int column = 0; column < tree->columnCount(); ++column)
                texts.append(tree->headerItem()->text(column));
        }
        const auto* popup = qobject_cast<const QComboBox*>(widget);
        for (int row = 0; popup && !popup->isEditable() && row < popup->count(); ++row) {
            if (popup->itemIcon(row).isNull())
                texts.append(popup->itemText(row));
        }
    }
    return texts;
}

TEST_F(AllWindows, SpeakOneLanguage) {
    const ui::Language pseudo(*qApp, QLocale(), ui::Language::Pseudo::Accented);
    // What is left in plain letters, or is called the same in every language.
    static const QRegularExpression english(u"[A-Za-z]{3,}"_s);
    QSet<QString> missed, pages{u"Tasks"_s, u"Keys"_s};  // Each language has pages of its own.
    help::DQHelpManager manual({}, {});
    for (const help::HelpPage& page : manual.pageRepresentations())
        pages.insert(page.title);
    int numberOfTexts = 0;
    visit([&](const QWidget& window) {
        for (QString text : textsOf(window)) {
            numberOfTexts += text.isEmpty() ? 0 : 1;
            for (const QString& name :
                 {engine::defaultUserAgent(), u"Orlop"_s, u"Experimental"_s, u"sha256"_s})
                text.remove(name);
            if (text.contains(english) && !text.startsWith(u'/') && !pages.contains(text))
                missed.insert(text);
        }
    });
    EXPECT_GT(numberOfTexts, 500);
    EXPECT_THAT(missed, IsEmpty());
}

/// The mnemonics that count at the same time in a window or a menu.
QStringList mnemonicTextsOf(const QWidget& window) {
    QStringList texts;
    if (window.inherits("QMenu")) {
        for (const QAction* action : window.actions())
            texts.append(action->text());
    }
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(&window))
            continue;
        if (const auto* bar = qobject_cast<const QMenuBar*>(widget)) {
            for (const QAction* action : bar->actions())
                texts.append(action->text());
        }
        const auto* label = qobject_cast<const QLabel*>(widget);
        if (label && label->buddy())
            texts.append(label->text());
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        if (button && !widget->inherits("QToolButton"))
            texts.append(button->text());
    }
    return texts;
}

TEST_F(AllWindows, HaveNoTwoMnemonicsAlikeInAnyLanguage) {
    for (const QLocale::Language language : {QLocale::English, QLocale::German}) {
        const ui::Language spoken(*qApp, QLocale(language));
        QStringList clashes;
        visit([&](const QWidget& window) {
            QHash<QString, QString> taken;
            for (const QString& text : mnemonicTextsOf(window)) {
                const QString mnemonic = QKeySequence::mnemonic(text).toString();
                if (!mnemonic.isEmpty() && taken.contains(mnemonic)) {
                    clashes.append(window.windowTitle() + u": "_s + taken.value(mnemonic) +
                                   u" / "_s + text);
                }
                taken.insert(mnemonic, text);
            }
        });
        EXPECT_THAT(clashes, IsEmpty());
    }
}

TEST_F(AllWindows, ArrowsPointAwayFromEachOtherInBothDirections) {
    int seen = 0;
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QGuiApplication::setLayoutDirection(direction);
        visit([&](const QWidget& window) {
            if (!qobject_cast<const ui::HelpWindow*>(&window))
                return;
            std::map<Qt::ArrowType, int> places;
            for (const auto* button : window.findChildren<QToolButton*>())
                places[button->arrowType()] = button->mapTo(&window, QPoint()).x();
            EXPECT_LT(places.at(Qt::LeftArrow), places.at(Qt::RightArrow)) << direction;
            ++seen;
        });
    }
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    EXPECT_EQ(seen, 2);
}

/// What has less room in a window than its text needs.
QStringList clippedIn(const QWidget& window) {
    QCoreApplication::sendPostedEvents();
    QStringList clipped;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const auto* label = qobject_cast<const QLabel*>(widget);
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const auto* area = qobject_cast<const QScrollArea*>(widget);
        const QString text = label ? label->text() : button ? button->text() : QString();
        if (!widget->isVisibleTo(&window))
            continue;
        const bool isNarrow =
            !text.isEmpty() && widget->width() < widget->minimumSizeHint().width();
        const bool isLow =
            !text.isEmpty() &&
            (label && label->wordWrap() ? label->height() < label->heightForWidth(label->width())
                                        : widget->height() < widget->minimumSizeHint().height());
        if (isNarrow || isLow)
            clipped.append(window.windowTitle() + u": "_s + text);
        if (area && area->verticalScrollBar()->maximum() > 0)
            clipped.append(area->accessibleName() + u" scrolls by "_s +
                           QString::number(area->verticalScrollBar()->maximum()));
    }
    return clipped;
}

TEST_F(AllWindows, HaveRoomForTheirTexts) {
    defaults.set(app::settings::scheduleQueue, true);
    defaults.setObject(u"Downloads Folder: Subdivision Format (Default)"_s, u"yyyy"_s);
    for (const bool isPseudo : {false, true}) {
        const ui::Language language(
            *qApp, QLocale(QLocale::German),
            isPseudo ? ui::Language::Pseudo::Accented : ui::Language::Pseudo::None);
        QStringList clipped;
        visit([&](const QWidget& window) { clipped += clippedIn(window); });
        EXPECT_THAT(clipped, IsEmpty());
    }
}

TEST_F(AllWindows, NameTheirControlsForAssistants) {
    QSet<QString> nameless;
    visit([&](QWidget& window) {
        EXPECT_NE(QAccessible::queryAccessibleInterface(&window)->role(), QAccessible::Client)
            << window.windowTitle().toStdString();
        for (QWidget* widget : window.findChildren<QWidget*>()) {
            const QWidget* parent = widget->parentWidget();
            const auto* label = qobject_cast<const QLabel*>(widget);
            EXPECT_TRUE(!label || !label->buddy() || label->buddy()->focusPolicy() != Qt::NoFocus)
                << label->text().toStdString();
            const bool isPart = (widget->focusProxy() && !widget->inherits("QLineEdit")) ||
                                widget->inherits("QScrollBar") ||
                                widget->objectName() == u"qt_scrollarea_viewport"_s ||
                                (parent->inherits("QComboBox") && !widget->inherits("QLineEdit")) ||
                                parent->inherits("QAbstractSpinBox");
            if (isPart || widget->focusPolicy() == Qt::NoFocus || widget->inherits("QMenu") ||
                !widget->isVisibleTo(&window))
                continue;
            const auto* interface = QAccessible::queryAccessibleInterface(widget);
            if (!interface || interface->text(QAccessible::Name).isEmpty()) {
                nameless.insert(window.windowTitle() + u": "_s +
                                QString::fromLatin1(widget->metaObject()->className()) + u' ' +
                                widget->objectName());
            }
        }
    });
    EXPECT_THAT(nameless, IsEmpty());
}

}  // namespace
