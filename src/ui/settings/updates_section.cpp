#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include "desktop/updates/sparkle_wrapper.h"
#include "links/text/localization.h"
#include "ui/news/online_services.h"
#include "ui/settings/sections.h"
#include "ui/settings/settings_page.h"
#include "ui/text.h"

namespace ui {
namespace {

using desktop::DQSparkleWrapper;

/// Who brings new versions, where it is not the user.
QString explanation(const DQSparkleWrapper* updates) {
    if (updates && !updates->packageManager().isEmpty()) {
        return translated("%1 looks after Orlop and brings new versions.")
            .arg(updates->packageManager());
    }
    return updates && updates->canCheck()
               ? translated("Orlop tells of new versions and installs nothing by itself.")
               : translated("This build of Orlop has no address to look for new versions at.");
}

struct Controls {
    QCheckBox* autoUpdateCheckingSwitch;
    QPushButton* check;
    QPushButton* visit;
    QLabel* statusTextField = nullptr;
    QLabel* statusDateTextField = nullptr;
};

void updateControls(const DQSparkleWrapper& updates, const Controls& controls) {
    const QString status = updates.isChecking()          ? translated("Looking for updates...")
                           : updates.problem().isEmpty() ? updates.statusDescription()
                                                         : updates.problem();
    controls.autoUpdateCheckingSwitch->setChecked(updates.checksAutomatically());
    controls.autoUpdateCheckingSwitch->setEnabled(updates.canCheck());
    controls.check->setEnabled(updates.canCheck() && !updates.isChecking());
    controls.visit->setEnabled(updates.page().has_value());
    controls.statusTextField->setText(status);
    controls.statusTextField->setTextInteractionFlags(status.isEmpty() ? Qt::NoTextInteraction
                                                                       : Qt::TextSelectableByMouse);
    controls.statusDateTextField->setText(status.isEmpty() ? QString()
                                                           : updates.statusDateDescription());
}

}  // namespace

SettingsPage* makeUpdatesSection(const SettingsContext& context, QWidget* parent) {
    auto* page = new SettingsPage(context, parent);
    DQSparkleWrapper* updates = desktop::sharedSparkleWrapper();
    Controls controls{new QCheckBox(translated("Look for new versions once a &day"), page),
                      new QPushButton(translated("Check &Now"), page),
                      new QPushButton(translated("&Show Page"), page)};
    page->addRow("Updates:", controls.autoUpdateCheckingSwitch);
    page->addRow("", {controls.check, controls.visit});
    controls.statusTextField = page->addNote("");
    controls.statusDateTextField = page->addNote("");
    for (QLabel* label : {controls.statusTextField, controls.statusDateTextField}) {
        label->setTextFormat(Qt::PlainText);
    }
    page->addNote("")->setText(explanation(updates));
    if (!updates) {
        for (QWidget* control :
             {static_cast<QWidget*>(controls.autoUpdateCheckingSwitch),
              static_cast<QWidget*>(controls.check), static_cast<QWidget*>(controls.visit)}) {
            control->setEnabled(false);
        }
        return page;
    }
    const auto update = [updates, controls, page] {
        updateControls(*updates, controls);
        Q_EMIT page->heightChanged();
    };
    QObject::connect(updates, &DQSparkleWrapper::changed, page, update);
    QObject::connect(controls.autoUpdateCheckingSwitch, &QCheckBox::clicked, updates,
                     &DQSparkleWrapper::toggleAutomaticChecking);
    QObject::connect(controls.check, &QPushButton::clicked, updates,
                     &DQSparkleWrapper::checkForUpdates);
    QObject::connect(controls.visit, &QPushButton::clicked, page,
                     [updates] { visitUpdatePage(*updates); });
    update();
    return page;
}

}  // namespace ui
