#include "ui/accessibility.h"

#include <QAccessibleWidget>
#include <QComboBox>
#include <QLineEdit>

namespace ui {
namespace {

/// A control may be asked for its role before it is put into its window.
class WindowInterface final : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    [[nodiscard]] QAccessible::Role role() const override {
        return widget()->isWindow() ? QAccessible::Window : QAccessibleWidget::role();
    }
};

/// Asked for each class of the object, the closest first: whoever comes to this one has no role of
/// its own.
QAccessibleInterface* makeWindowInterface(const QString& className, QObject* object) {
    auto* widget = className == QLatin1String("QWidget") ? qobject_cast<QWidget*>(object) : nullptr;
    return widget && widget->isWindow() ? new WindowInterface(widget) : nullptr;
}

}  // namespace

void setAccessibleName(QWidget& control, const QString& name) {
    control.setAccessibleName(name);
    const auto* selector = qobject_cast<const QComboBox*>(&control);
    if (selector && selector->lineEdit()) {
        selector->lineEdit()->setAccessibleName(name);
    }
}

void tellWindowsAsWindows() {
    QAccessible::installFactory(makeWindowInterface);
}

}  // namespace ui
