#pragma once

#include <QObject>
#include <vector>

#include "app/commands/command.h"

class QAction;
class QMenu;
class QWidget;

namespace app {
class Commands;
}

namespace ui {

/// The commands as actions of a window: their titles, keys and marks.
///
/// Actions stand as enabled while no menu shows them, so that their keys work without anybody
/// keeping watch over the queue; a command that cannot be given beeps.
class CommandActions final : public QObject {
    Q_OBJECT

public:
    /// Both outlive the actions.
    CommandActions(const app::Commands& commands, QWidget& window);

    [[nodiscard]] QAction* action(app::Command command, qint64 tag = 0);
    /// Brings titles, marks and what is enabled up to date whenever the menu opens.
    void watch(QMenu& menu);

    void addTo(QMenu& menu, app::Command command, qint64 tag = 0);
    /// All tags of the command, as choices of which one is marked.
    void addAllTo(QMenu& menu, app::Command command);

private:
    struct Entry {
        app::Command command;
        qint64 tag;
        QAction* action;
    };

    void validate(const QMenu& menu) const;

    const app::Commands& commands_;
    QWidget& window_;
    std::vector<Entry> entries_;
};

}  // namespace ui
