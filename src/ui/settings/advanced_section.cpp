#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QRegularExpressionValidator>

#include "app/main_controller.h"
#include "app/settings.h"
#include "desktop/settings.h"
#include "engine/settings.h"
#include "engine/workers/throttle.h"
#include "engine/workers/user_agent.h"
#include "links/settings.h"
#include "platform/base/user_defaults.h"
#include "platform/session/flatpak.h"
#include "platform/text/regular_expression.h"
#include "ui/settings/login_item_switch.h"
#include "ui/settings/sections.h"
#include "ui/settings/settings_page.h"
#include "ui/text.h"

namespace ui {
namespace {

qint64 zeroOrOne(qint64 value) {
    return value > 0 ? 1 : 0;
}

void addFiles(SettingsPage& page) {
    using namespace engine::settings;
    page.addPopup(
        "Keep &unfinished files:", {{"Beside the finished file", 1}, {"In Orlop's own folder", 0}},
        intermediatesLocation, zeroOrOne);
    page.addPopup("File e&xtensions:",
                  {{"Leave as they are", 0},
                   {"Add if missing", 1},
                   {"Add if missing, correct if wrong", 2},
                   {"Always by the type of the content", 3}},
                  filenameExtensionPolicy,
                  [](qint64 value) { return value >= 1 && value <= 3 ? value : 0; });
    page.addPopup("&Date of files:", {{"When they were downloaded", 0}, {"The server's date", 1}},
                  lastModifiedHeaderAdoption, zeroOrOne);
    page.addSwitch("", "&Note in the file where it came from",
                   links::settings::storeSourceURLInSpotlightComment);
}

void addAddresses(SettingsPage& page, const SettingsContext& context) {
    page.addSwitch("Addresses:", "&Skip services that only redirect",
                   links::settings::skipRedirectingServices);
    page.addSwitch("", "&Plus signs in addresses stand for blanks",
                   links::settings::plusSignsStandForBlanks);
    auto* edit = new QPushButton(translated("Edit &Rules..."), &page);
    edit->setAutoDefault(false);
    edit->setAccessibleName(translated("Edit rules for download pages"));
    page.addRow("Download pages:", edit);
    QObject::connect(edit, &QPushButton::clicked, &page,
                     [show = context.showSection] { show(QStringLiteral("Experimental")); });
    QLineEdit* agent = page.addField("User &agent:", engine::settings::customUserAgent);
    agent->setPlaceholderText(engine::defaultUserAgent());
    const QRegularExpression plainText(QStringLiteral("[\\x20-\\x7e]*"));
    agent->setValidator(new QRegularExpressionValidator(plainText, agent));
    page.addNote("What servers are told about the program. “-” tells them nothing.");
}

/// Grey says that no link matches: there is no filter, or it is no regular expression.
void updateSafariExtensionFilterFieldColor(QLineEdit& field, const QString& filter) {
    const QString pattern = filter.trimmed();
    const bool isInForce =
        !pattern.isEmpty() && platform::RegularExpression::compile(pattern).has_value();
    QPalette palette = field.parentWidget()->palette();
    palette.setColor(
        QPalette::Text,
        palette.color(isInForce ? QPalette::Active : QPalette::Disabled, QPalette::Text));
    field.setPalette(palette);
}

/// Stored as it is typed, for browser extensions, which have settings of their own.
void addBrowserFilter(SettingsPage& page, const SettingsContext& context) {
    const auto& setting = app::settings::safariExtensionFilter;
    platform::UserDefaults& suite = context.defaults.suite(app::settings::sharedDomain);
    auto* safariExtensionFilterField = new QLineEdit(suite.get(setting), &page);
    safariExtensionFilterField->setObjectName(QStringLiteral("safariExtensionFilterField"));
    page.addRow("Lin&ks for browsers:", safariExtensionFilterField);
    page.addNote(
        "A regular expression for the links that a browser extension hands over. It is "
        "grey while it is empty or cannot be read.");
    updateSafariExtensionFilterFieldColor(*safariExtensionFilterField,
                                          safariExtensionFilterField->text());
    QObject::connect(safariExtensionFilterField, &QLineEdit::textEdited, safariExtensionFilterField,
                     [safariExtensionFilterField, &suite](const QString& text) {
                         suite.set(setting, text);
                         updateSafariExtensionFilterFieldColor(*safariExtensionFilterField, text);
                     });
}

/// A setting of which another one says the opposite, and which counts from the next start.
void addBasicDownloads(SettingsPage& page, const SettingsContext& context) {
    const auto& supported = engine::settings::throttleSupported;
    engine::Throttle& throttle = context.controller.queue().throttle();
    auto* basicDownloadSwitch =
        new QCheckBox(translated("Without &bandwidth limit and its controls"), &page);
    basicDownloadSwitch->setObjectName(supported.name());
    page.addRow("Basic downloads:", basicDownloadSwitch);
    QLabel* basicDownloadExplanationView =
        page.addNote("This counts from the next start of Orlop.");
    context.binder.follow(
        {supported.name()}, basicDownloadSwitch,
        [basicDownloadSwitch, basicDownloadExplanationView, &defaults = context.defaults,
         &throttle] {
            const bool isSupported = defaults.get(engine::settings::throttleSupported);
            basicDownloadSwitch->setChecked(!isSupported);
            basicDownloadExplanationView->setVisible(isSupported != throttle.isAvailable());
        });
    QObject::connect(basicDownloadSwitch, &QCheckBox::clicked, &page,
                     [&throttle](bool isBasic) { throttle.setAvailable(!isBasic); });
}

/// What a sandbox has in its own folder of entries, no desktop reads.
void addLoginItem(SettingsPage& page) {
    if (platform::isInFlatpak())
        return;
    auto* loginItem = new LoginItemSwitch(&page);
    loginItem->setObjectName(QStringLiteral("loginItemSwitch"));
    page.addRow("At login:", loginItem);
}

/// Only a mode that the desktop can show is stored.
void changeApplicationMode(qint64 mode, QComboBox& applicationModeSelector,
                           const SettingsContext& context) {
    const app::FrontEnd& frontEnd = context.controller.surroundings().frontEnd;
    if (mode == 0 || frontEnd.presence.canShowStatusItem()) {
        context.defaults.set(app::settings::applicationMode, mode);
        return;
    }
    selectPopupValue(applicationModeSelector, context.defaults.get(app::settings::applicationMode));
    frontEnd.questions.confirm(
        {app::Alert::Kind::ApplicationMode, QString::fromLatin1(translatable("Not now...")),
         QString::fromLatin1(translatable("Your desktop shows no status items at the moment.")),
         QString::fromLatin1(translatable("Understood")), QString()});
}

void addApplicationMode(SettingsPage& page, const SettingsContext& context) {
    static const auto& setting = app::settings::applicationMode;
    QComboBox* applicationModeSelector =
        makePopup({{"Task bar", 0}, {"Status item", 1}, {"Task bar and status item", 2}}, &page);
    applicationModeSelector->setObjectName(setting.name());
    page.addRow("Sho&w Orlop in:", applicationModeSelector);
    QObject::connect(applicationModeSelector, &QComboBox::activated, &page,
                     [applicationModeSelector, &context] {
                         changeApplicationMode(applicationModeSelector->currentData().toLongLong(),
                                               *applicationModeSelector, context);
                     });
    page.addPopup("Drop tar&get:", {{"With the status item", 0}, {"Always", 1}, {"Never", 2}},
                  desktop::settings::dropTarget);
    QLabel* applicationModeExplanationView = page.addNote(
        "The window opens from the status item's menu and by a click on the drop target, a small "
        "window that takes addresses and can be dragged to any place.");
    context.binder.follow(
        {setting.name()}, applicationModeSelector,
        [applicationModeSelector, applicationModeExplanationView, &defaults = context.defaults] {
            const qint64 mode = defaults.get(setting);
            selectPopupValue(*applicationModeSelector, mode);
            applicationModeExplanationView->setVisible(mode >= 1);
        });
}

}  // namespace

SettingsPage* makeAdvancedSection(const SettingsContext& context, QWidget* parent) {
    auto* page = new SettingsPage(context, parent);
    addLoginItem(*page);
    addApplicationMode(*page, context);
    page->addSwitch("Window:", "&Height follows the list", app::settings::rubberWindow);
    page->addSwitch("", "An&imations", engine::settings::uselessAnimations);
    page->addPopup("&Full screen:", {{"Allowed", 1}, {"Not allowed", 0}},
                   app::settings::fullScreenModeBehavior,
                   [](qint64 value) { return value == 1 ? 1 : 0; });
    page->addGap();
    addFiles(*page);
    page->addGap();
    addAddresses(*page, context);
    addBrowserFilter(*page, context);
    addBasicDownloads(*page, context);
    return page;
}

}  // namespace ui
