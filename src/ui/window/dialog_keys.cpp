#include "ui/window/dialog_keys.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>

namespace ui {

DialogKeys::DialogKeys() {
    qApp->installEventFilter(this);
}

bool DialogKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType() ||
        !static_cast<QKeyEvent*>(event)->matches(QKeySequence::Close)) {
        return false;
    }
    auto* dialog = qobject_cast<QDialog*>(static_cast<QWidget*>(watched)->window());
    if (dialog) {
        dialog->reject();
    }
    return dialog != nullptr;
}

}  // namespace ui
