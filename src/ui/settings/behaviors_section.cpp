#include <QCheckBox>
#include <QComboBox>

#include "app/main_controller.h"
#include "app/settings.h"
#include "ui/settings/sections.h"
#include "ui/settings/settings_page.h"

namespace ui {
namespace {

/// Values of a popup that stands for two switches.
enum CloseBehavior : qint64 { KeepsRunning, QuitsWithNothingActive, Quits };

/// The scale of what follows a success: off, each, last.
const std::vector<Choice> occasions{
    {"Never", 0}, {"After each download", 1}, {"After the last download", 2}};

qint64 upToTwo(qint64 value) {
    return std::clamp<qint64>(value, 0, 2);
}

/// A switch that, turned on, also takes what is there already.
void addAutoClear(SettingsPage& page, const SettingsContext& context, const char* label,
                  const char* title, const platform::Setting<bool>& setting,
                  engine::StatusMask mask) {
    QCheckBox* box = page.addSwitch(label, title, setting);
    QObject::connect(box, &QCheckBox::clicked, &page,
                     [&controller = context.controller, mask](bool isOn) {
                         if (isOn) {
                             controller.vanishDownloads(controller.downloadsMatchingStatusMask(mask));
                         }
                     });
}

void addQuitOnClose(SettingsPage& page, const SettingsContext& context) {
    using app::settings::quitOnClose;
    using app::settings::quitOnCloseCleanSlateOnly;
    QComboBox* popup = makePopup({{"Keeps Orlop running", KeepsRunning},
                                  {"Quits if nothing is active", QuitsWithNothingActive},
                                  {"Quits", Quits}},
                                 &page);
    popup->setObjectName(quitOnClose.name());
    page.addRow("Closing the &window:", popup);
    platform::UserDefaults& defaults = context.defaults;
    context.binder.follow({quitOnClose.name(), quitOnCloseCleanSlateOnly.name()}, popup,
                          [popup, &defaults] {
                              selectPopupValue(*popup, !defaults.get(quitOnClose) ? KeepsRunning
                                               : defaults.get(quitOnCloseCleanSlateOnly)
                                                   ? QuitsWithNothingActive
                                                   : Quits);
                          });
    QObject::connect(popup, &QComboBox::activated, &page,
                     [popup, &defaults, &controller = context.controller] {
                         const qint64 chosen = popup->currentData().toLongLong();
                         defaults.set(quitOnClose, chosen != KeepsRunning);
                         defaults.set(quitOnCloseCleanSlateOnly, chosen == QuitsWithNothingActive);
                         controller.updateStatusAndForceUpdateApplicationImage(false);
                     });
}

}  // namespace

SettingsPage* makeBehaviorsSection(const SettingsContext& context, QWidget* parent) {
    using namespace app::settings;
    auto* page = new SettingsPage(context, parent);
    page->addPopup("&Handed an address:",
                   {{"Stay in front", 0}, {"Step back behind other windows", 1}, {"Hide", 2}},
                   autoRetreat, upToTwo);
    page->addNote("What Orlop does once another program has passed it something to download.");
    page->addGap();
    page->addPopup("Ask for &attention:", occasions, successBounceMode, upToTwo);
    page->addPopup("Play a &sound:", occasions, successHeartbeatMode, upToTwo);
    page->addGap();
    addAutoClear(*page, context, "Clear from the list:", "&Finished downloads", autoClearSuccesses,
                 engine::DQDownloadStatusDone);
    addAutoClear(*page, context, "", "Fai&led downloads", autoClearLemons,
                 engine::DQDownloadStatusAborted);
    page->addGap();
    addQuitOnClose(*page, context);
    page->addPopup("&Quitting while downloading:",
                   {{"Asks first", 0}, {"Pauses without asking", 1}}, quitProcedure,
                   [](qint64 value) { return value > 0 ? 1 : 0; });
    QCheckBox* quits = page->addSwitch("", "Quit when everything is &done", autoQuit);
    QObject::connect(quits, &QCheckBox::clicked, page, [&controller = context.controller] {
        // Everything may be done already.
        controller.allDone()._mayTriggerQuitOnAllDone = false;
    });
    return page;
}

}  // namespace ui
