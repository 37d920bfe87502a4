#include "ui/settings/login_item_switch.h"

#include <QEvent>
#include <QMessageBox>

#include "app/failures/file_problem.h"
#include "platform/files/files.h"
#include "ui/text.h"

namespace ui {

LoginItemSwitch::LoginItemSwitch(QWidget* parent)
    : QCheckBox(translated("Start Orlop when you &log in"), parent) {
    connect(this, &QCheckBox::clicked, this, &LoginItemSwitch::store);
}

bool LoginItemSwitch::event(QEvent* event) {
    if (event->type() == QEvent::Show || event->type() == QEvent::WindowActivate) {
        refresh();
    }
    return QCheckBox::event(event);
}

void LoginItemSwitch::refresh() {
    constexpr qint64 shortestPause = 2000;
    if (!sinceRefresh_.isValid() || sinceRefresh_.hasExpired(shortestPause)) {
        sinceRefresh_.start();
        setChecked(item_.isEnabled());
    }
}

void LoginItemSwitch::store(bool isOn) {
    if (const auto error = item_.setEnabled(isOn)) {
        QMessageBox::warning(
            window(), translated("Settings"),
            translated("What Orlop needs to be started when you log in cannot be written to %1: %2")
                .arg(platform::abbreviateWithTilde(item_.entryPath()),
                     app::writingProblem(*error)));
    }
    setChecked(item_.isEnabled());
}

}  // namespace ui
