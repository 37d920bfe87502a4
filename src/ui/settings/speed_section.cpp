#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QStandardItemModel>
#include <algorithm>

#include "app/main_controller.h"
#include "app/schedule/automation.h"
#include "engine/queue/queue_admission.h"
#include "engine/settings.h"
#include "engine/workers/throttle.h"
#include "ui/schedule/throttle_field.h"
#include "ui/settings/sections.h"
#include "ui/settings/settings_page.h"
#include "ui/text.h"

namespace ui {
namespace {

constexpr qint64 mostAtOnce = 9;
const Choice separator{nullptr};
const Choice unlimited{"Unlimited", 0};

std::vector<Choice> numbers(qint64 first, qint64 last) {
    std::vector<Choice> choices;
    for (qint64 number = first; number <= last; ++number) {
        choices.push_back({"", number});
    }
    return choices;
}

std::vector<Choice> limits() {
    std::vector<Choice> choices = numbers(1, mostAtOnce);
    choices.push_back(separator);
    choices.push_back(unlimited);
    return choices;
}

/// What the overall limit forbids cannot be chosen, and the lower of the two limits is shown.
void showLimitsPerHost(QComboBox& popup, const engine::QueueAdmission& admission) {
    std::vector<qint64> tags;
    std::vector<int> rows;
    for (int row = 0; row < popup.count(); ++row) {
        if (popup.itemData(row).isValid()) {
            tags.push_back(popup.itemData(row).toLongLong());
            rows.push_back(row);
        }
    }
    const auto choice = admission.numberOfConcurrentDownloadsPerHostSelector(tags);
    auto* items = qobject_cast<QStandardItemModel*>(popup.model());
    for (std::size_t index = 0; index < rows.size(); ++index) {
        items->item(rows[index])->setEnabled(choice.enabled[index]);
    }
    selectPopupValue(popup, std::max<qint64>(0, choice.selectedTag));
}

void addLimits(SettingsPage& page, const SettingsContext& context) {
    engine::QueueAdmission& admission = context.controller.queue().admission();
    const auto& overall = engine::settings::numberOfConcurrentDownloads;
    const auto& perHost = engine::settings::numberOfConcurrentDownloadsPerHost;
    page.addPopup("&Downloads at once:", limits(), overall);
    QComboBox* popup = makePopup(limits(), &page);
    popup->setObjectName(perHost.name());
    page.addRow("From one &host:", popup);
    context.binder.follow({overall.name(), perHost.name()}, popup,
                          [popup, &admission] { showLimitsPerHost(*popup, admission); });
    QObject::connect(popup, &QComboBox::activated, &page, [popup, &admission] {
        admission.setNumberOfConcurrentDownloadsPerHost(popup->currentData().toLongLong());
        showLimitsPerHost(*popup, admission);
    });
}

void addAcceleration(SettingsPage& page, const SettingsContext& context) {
    static const auto& enabled = engine::settings::accelerationEnabled;
    page.addSwitch("Acceleration:", "&Fetch large files over several connections", enabled);
    QComboBox* factor = page.addPopup("&Connections:", numbers(2, mostAtOnce),
                                      engine::settings::accelerationChannels);
    page.addNote("Some servers allow no more than one connection.");
    QWidget* sharing = page.addSwitch("", "Fast connections help &slow ones",
                                      engine::settings::accelerationSharesSlowParts);
    context.binder.follow({enabled.name()}, factor,
                          [factor, sharing, &defaults = context.defaults] {
                              factor->setEnabled(defaults.get(enabled));
                              sharing->setEnabled(defaults.get(enabled));
                          });
}

void addThrottle(SettingsPage& page, const SettingsContext& context) {
    app::Toggles& toggles = context.controller.automation().toggles();
    page.addSwitch("Bandwidth:", "&Limit the speed of all downloads together",
                   engine::settings::throttleEnabled,
                   [&toggles](bool) { toggles.toggleThrottle(); });
    auto* field = new ThrottleField(context.defaults, context.controller.queue().throttle(), &page);
    page.addRow("L&imit:", {field, new QLabel(translated("KB per second"), &page)});
}

}  // namespace

SettingsPage* makeSpeedSection(const SettingsContext& context, QWidget* parent) {
    auto* page = new SettingsPage(context, parent);
    addLimits(*page, context);
    page->addGap();
    addAcceleration(*page, context);
    page->addGap();
    if (context.controller.queue().throttle().isAvailable()) {
        addThrottle(*page, context);
        page->addGap();
    }
    page->addSwitch("Failures:", "&Try interrupted downloads again", engine::settings::autoResume);
    page->addNote("Of several that stop within seconds, one; the others wait for you.");
    page->addPopup("B&usy servers are asked again:",
                   {{"Never", 0}, {"Once", 1}, {"", 2}, {"", 3}, {"", 5}, {"", 10}, {"", 20}},
                   engine::settings::retriesWhenServerIsBusy);
    return page;
}

}  // namespace ui
