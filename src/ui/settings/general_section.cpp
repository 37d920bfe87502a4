#include <QCheckBox>
#include <QComboBox>

#include "app/main_controller.h"
#include "app/rules/folders.h"
#include "app/settings.h"
#include "engine/settings.h"
#include "ui/rules/folder_selector.h"
#include "ui/rules/rule_list.h"
#include "ui/rules/subdivision_field.h"
#include "ui/settings.h"
#include "ui/settings/sections.h"
#include "ui/settings/settings_page.h"

namespace ui {
namespace {

void addDownloadsFolder(SettingsPage& page, const SettingsContext& context) {
    platform::UserDefaults& defaults = context.defaults;
    auto* selector = new FolderSelector(FolderSelector::Use::General, context.controller.ruleBook(),
                                        defaults, &page);
    selector->setObjectName(engine::settings::downloadsFolder.name());
    page.addRow("&Download to:", selector);
    context.binder.follow(
        {engine::settings::downloadsFolder.name(), app::settings::recentDownloadsFolders.name(),
         app::settings::sortDownloadsFoldersByName.name()},
        selector,
        [selector, &defaults] { selector->setFolder(app::Folders(defaults).downloadsFolder()); });
    QObject::connect(selector, &FolderSelector::folderChosen, &page, [selector, &defaults] {
        if (selector->folder()) {
            app::Folders(defaults).setDownloadsFolder(*selector->folder());
        }
    });
}

void addSubdivision(SettingsPage& page, const SettingsContext& context) {
    static const auto& general = engine::settings::subdivisionFormatDefault;
    static const auto& byRule = engine::settings::subdivisionFormatRules;
    page.addRow("&Subfolder by date:", new SubdivisionField(general, context.binder, &page));
    page.addRow("In &rules' folders:", new SubdivisionField(byRule, context.binder, &page));
    QComboBox* date = page.addPopup(
        "Date &used:", {{"Today", 0}, {"When the download was added", 1}},
        engine::settings::subdivisionDate, [](qint64 value) { return value == 1 ? 1 : 0; });
    context.binder.follow(
        {general.name(), byRule.name()}, date, [&page, date, &defaults = context.defaults] {
            page.setRowVisible(date,
                               !defaults.get(general).isEmpty() || !defaults.get(byRule).isEmpty());
        });
}

}  // namespace

SettingsPage* makeGeneralSection(const SettingsContext& context, QWidget* parent) {
    auto* page = new SettingsPage(context, parent);
    page->addSwitch("New downloads:", "Start at &once", app::settings::autoStart);
    page->addSwitch("", "Skip addresses that are &already in the list",
                    app::settings::instantDuplicateCheck);
    page->addSwitch("", "Offer addresses that are copied", settings::watchClipboard);
    page->addGap();
    addDownloadsFolder(*page, context);
    page->addSwitch("", "Asked for a folder, choose the &name as well",
                    app::settings::folderPromptAllowsFilenameEditing);
    page->addGap();
    addSubdivision(*page, context);
    page->addGap();
    page->addRow("Rul&es:", new RuleList(context.controller.ruleBook(), context.binder, page));
    page->addNote("The first rule that fits a download decides on its folder.");
    return page;
}

}  // namespace ui
