#include "ui/schedule/schedule_settings.h"
#include "ui/settings/sections.h"
#include "ui/settings/settings_page.h"

namespace ui {

SettingsPage* makeScheduleSection(const SettingsContext& context, QWidget* parent) {
    auto* page = new SettingsPage(context, parent);
    page->addRow("Automatically:",
                 new ScheduleSettings(context.controller, context.defaults, page));
    return page;
}

}  // namespace ui
