#pragma once

#include <QTimer>
#include <memory>

#include "desktop/status/drag_and_drop_destination.h"
#include "desktop/status/status_item_controller.h"
#include "platform/base/observation.h"
#include "ui/status/drop_target.h"
#include "ui/status/tray_item.h"

namespace app {
class Commands;
}

namespace desktop {
class ApplicationIcon;
}

namespace ui {

class StatusItemMenu;

/// The program outside its windows: the item in the desktop's panel and the drop target, as the
/// settings ask for them. One for the process.
class StatusItems final : public QObject, private desktop::DQStatusItemDragAndDropDestination {
    Q_OBJECT

public:
    /// All of it outlives this.
    StatusItems(app::Commands& commands, desktop::ApplicationIcon& icon);
    ~StatusItems() override;

    [[nodiscard]] bool canShowItem() const { return tray_.isPossible(); }
    [[nodiscard]] bool isDropTargetShown() const { return target_.isVisible(); }

private:
    void makeMenu();
    void updateStatusItem();
    void itemDidChange(std::optional<bool> isShown);
    void updateToolTip();
    void showMenu(const QPoint& position);
    void togglePause();

    QStringList draggedTypesAcceptedByStatusItem() const override;
    bool canDropPasteboard(const app::Pasteboard& pasteboard) const override;
    bool dropPasteboard(const app::Pasteboard& pasteboard) override;
    bool springLoadStatusItem() override;

    app::Commands& commands_;
    desktop::DQStatusItemController controller_;
    TrayItem tray_;
    DropTarget target_;
    std::unique_ptr<StatusItemMenu> menu_;
    std::optional<bool> isItemShown_;
    QTimer toolTipUpdate_;
    platform::Observation observation_;
};

}  // namespace ui
