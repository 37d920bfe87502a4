#include "ui/schedule/toolbar_explanation.h"

#include <QCheckBox>
#include <QMessageBox>

#include "app/schedule/explanation.h"
#include "ui/art/theme.h"
#include "ui/text.h"

namespace ui {

bool showToolbarButtonExplanation(const QString& section, platform::UserDefaults& defaults,
                                  const std::function<QWidget*(const QString&)>& showSection) {
    const auto explanation = app::toolbarButtonExplanation(defaults, section);
    if (!explanation) {
        return false;
    }
    auto* alert =
        new QMessageBox(QMessageBox::Information, QStringLiteral("Orlop"),
                        alertTitle(explanation->message), QMessageBox::Ok, showSection(section));
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setInformativeText(explanation->text);
    auto* suppression = new QCheckBox(translated("Do not show this message again"));
    suppression->setFont(noteFont(suppression->font()));
    suppression->setChecked(true);
    alert->setCheckBox(suppression);
    QObject::connect(alert, &QMessageBox::finished, alert, [&defaults, section, suppression] {
        if (suppression->isChecked()) {
            app::suppressToolbarButtonExplanation(defaults, section);
        }
    });
    alert->open();
    return true;
}

}  // namespace ui
