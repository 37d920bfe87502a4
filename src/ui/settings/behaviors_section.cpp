#include <QCheckBox>
#include <QComboBox>

#include "app/main_controller.h"
#include "app/schedule/automation.h"
#include "app/settings.h"
#include "ui/settings/sections.h"
#include "ui/settings/settings_page.h"

namespace ui {
namespace {

/// The scale of what follows a success: off, each, last.
const std::vector<Choice> occasions{
    {"Never", 0}, {"After each download", 1}, {"After the last download", 2}};

qint64 valueOf(app::CloseBehavior behavior) {
    return static_cast<qint64>(behavior);
}

/// A choice of three that is kept in two settings.
void addCloseBehavior(SettingsPage& page, const SettingsContext& context) {
    using app::CloseBehavior;
    const QString key = app::settings::quitOnClose.name();
    QComboBox* popup =
        makePopup({{"Keeps Orlop running", valueOf(CloseBehavior::Stays)},
                   {"Quits if nothing is active", valueOf(CloseBehavior::QuitsOnCleanSlate)},
                   {"Quits", valueOf(CloseBehavior::Quits)}},
                  &page);
    popup->setObjectName(key);
    page.addRow("Closing the &window:", popup);
    app::Toggles& toggles = context.controller.automation().toggles();
    context.binder.follow(
        {key, app::settings::quitOnCloseCleanSlateOnly.name()}, popup,
        [popup, &toggles] { selectPopupValue(*popup, valueOf(toggles.closeBehavior())); });
    QObject::connect(popup, &QComboBox::activated, &page, [popup, &toggles] {
        toggles.setCloseBehavior(static_cast<CloseBehavior>(popup->currentData().toLongLong()));
    });
    page.addNote("Where no panel shows Orlop's icon, it quits as well if nothing is active.");
}

}  // namespace

SettingsPage* makeBehaviorsSection(const SettingsContext& context, QWidget* parent) {
    using namespace app::settings;
    app::Toggles& toggles = context.controller.automation().toggles();
    auto* page = new SettingsPage(context, parent);
    page->addPopup("&Handed an address:",
                   {{"Stay in front", 0}, {"Step back behind other windows", 1}, {"Hide", 2}},
                   autoRetreat);
    page->addNote("What Orlop does once another program has passed it something to download.");
    page->addGap();
    page->addPopup("Ask for &attention:", occasions, successBounceMode);
    page->addPopup("Play a &sound:", occasions, successHeartbeatMode);
    page->addGap();
    page->addSwitch("Clear from the list:", "&Finished downloads", autoClearSuccesses,
                    [&toggles](bool clears) { toggles.setAutoClearSuccesses(clears); });
    page->addSwitch("", "Fai&led downloads", autoClearLemons,
                    [&toggles](bool clears) { toggles.setAutoClearLemons(clears); });
    page->addGap();
    addCloseBehavior(*page, context);
    page->addPopup("&Quitting while downloading:",
                   {{"Asks first", 0}, {"Pauses without asking", 1}}, quitProcedure);
    page->addSwitch("", "Quit when everything is &done", autoQuit,
                    [&toggles](bool quits) { toggles.setAutoQuit(quits); });
    return page;
}

}  // namespace ui
