#pragma once

#include <QIcon>
#include <QSystemTrayIcon>
#include <QTimer>
#include <memory>
#include <optional>

#include "desktop/status/status_notifier_host.h"

namespace ui {

/// The item in the desktop's panel, where there is one: a StatusNotifierItem, or on X11 an icon in
/// an old system tray. It comes and goes with the panel.
class TrayItem final : public QObject {
    Q_OBJECT

public:
    TrayItem();
    ~TrayItem() override;

    void setEnabled(bool isEnabled);
    /// Whether an item would be seen now.
    [[nodiscard]] bool isPossible() const { return wayNow().has_value(); }
    void setIcon(const QIcon& icon);
    void setToolTip(const QString& text);
    /// Outlives the item or is replaced.
    void setMenu(QMenu* menu);

Q_SIGNALS:
    /// Whether the item is seen, once that is known; a panel that restarts gets some seconds.
    /// Nothing: none is wanted.
    void shownChanged(std::optional<bool> isShown);
    void clicked();
    void middleClicked();

private:
    enum class Way { StatusNotifier, SystemTray };

    [[nodiscard]] std::optional<Way> wayNow() const;
    void update();
    void showAnew();
    void tellOfAbsence();
    void react(QSystemTrayIcon::ActivationReason reason);

    desktop::StatusNotifierHost host_;
    bool isEnabled_ = false;
    bool hasToldOfAbsence_ = false;
    /// Qt decides once for the life of the process which way its items go.
    std::optional<Way> decided_;
    std::unique_ptr<QSystemTrayIcon> item_;
    QIcon icon_;
    QString toolTip_;
    QMenu* menu_ = nullptr;
    QTimer patience_, look_;
};

}  // namespace ui
