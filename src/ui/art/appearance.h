#pragma once

#include <QDBusMessage>
#include <QObject>

namespace ui {

/// Follows the desktop's choice between light and dark, where Qt's platform theme does not bring
/// a palette of its own for it. By way of the desktop's settings portal
/// (org.freedesktop.portal.Settings, "org.freedesktop.appearance"), also while the program runs.
class Appearance final : public QObject {
    Q_OBJECT

public:
    explicit Appearance(QObject* parent = nullptr);

private Q_SLOTS:
    void settingChanged(const QDBusMessage& message);

private:
    void readColorScheme();
    void apply(bool prefersDark);

    bool isOurs_ = false;
};

}  // namespace ui
