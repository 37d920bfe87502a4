#pragma once

#include <QToolBar>
#include <map>

#include "app/commands/command.h"
#include "platform/base/observation.h"
#include "ui/toolbar/toolbar_layout.h"

class QLineEdit;
class QWidgetAction;

namespace app {
class Commands;
}

namespace ui {

class SegmentedControl;

/// The main toolbar: the items that the user has put there, showing how the settings and the queue
/// stand.
class MainToolbar final : public QToolBar {
    Q_OBJECT

public:
    /// The commands outlive the toolbar.
    MainToolbar(const app::Commands& commands, QWidget* parent);

    /// Null: it is not in the toolbar.
    [[nodiscard]] QLineEdit* filterField() const;
    void runCustomizationPalette();
    /// What of the queue's downloads can be started or paused may have changed.
    void updateToolbarQueuePauseButton();

Q_SIGNALS:
    void filterTextChanged(const QString& text);
    /// The user is done with the filter field.
    void filterLeft();
    /// A segment was clicked that is a short cut to this section of the settings.
    void shortcutUsed(const QString& preferencesSection);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeSegments();
    void makeFilterField();
    void makeButtons();
    void keep(const QString& item, QWidget* widget);
    void rebuild();
    void updateSegments();
    [[nodiscard]] app::Command pauseCommand() const;
    void showPauseMenu(int segment, const QPoint& position);

    const app::Commands& commands_;
    ToolbarLayout layout_;
    QStringList shownItems_;
    std::map<QString, QWidgetAction*> items_;
    SegmentedControl* toolbarQueuePauseButton = nullptr;
    SegmentedControl* toolbarScheduleButton = nullptr;
    SegmentedControl* toolbarAccelerateThrottleButton = nullptr;
    QLineEdit* toolbarFilterField = nullptr;
    platform::Observation observation_;
};

}  // namespace ui
