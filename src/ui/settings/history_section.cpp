#include <QCheckBox>
#include <QComboBox>

#include "app/settings.h"
#include "ui/settings/sections.h"
#include "ui/settings/settings_page.h"

namespace ui {

SettingsPage* makeHistorySection(const SettingsContext& context, QWidget* parent) {
    using namespace app::settings;
    auto* page = new SettingsPage(context, parent);
    const Choice separator{nullptr};
    page->addPopup("&Remember downloads:",
                   {{"None", 0},
                    separator,
                    {"", 10},
                    {"", 25},
                    {"", 50},
                    {"", 100},
                    {"", 250},
                    {"", 500},
                    {"", 1000},
                    separator,
                    {"All", -1}},
                   numberOfHistoryItems);
    QComboBox* topLevel =
        page->addPopup("In the &menu itself:", {{"", 5}, {"", 10}, {"", 15}, {"", 20}, {"", 30}},
                       numberOfTopLevelHistoryItems);
    page->addNote("Older ones stand in a menu of their day.");
    page->addGap();
    QCheckBox* complete =
        page->addSwitch("History:", "&Only downloads that finished", historyOfCompleteDownloads);
    page->addSwitch("", "&Clear when quitting", clearHistoryOnQuit);
    context.binder.follow({numberOfHistoryItems.name()}, page,
                          [topLevel, complete, &defaults = context.defaults] {
                              const bool remembers = defaults.get(numberOfHistoryItems) != 0;
                              topLevel->setEnabled(remembers);
                              complete->setEnabled(remembers);
                          });
    return page;
}

}  // namespace ui
