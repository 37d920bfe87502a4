#include "ui/commands/command_actions.h"

#include <QAction>
#include <QActionGroup>
#include <QKeySequence>
#include <QMenu>
#include <algorithm>

#include "app/commands/commands.h"

namespace ui {

CommandActions::CommandActions(const app::Commands& commands, QWidget& window)
    : commands_(commands), window_(window) {}

QAction* CommandActions::action(app::Command command, qint64 tag) {
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
        return entry.command == command && entry.tag == tag;
    });
    if (found != entries_.end()) {
        return found->action;
    }
    const app::CommandDescription& description = app::commandDescription(command, tag);
    auto* made = new QAction(app::commandTitle(command, tag), this);
    made->setObjectName(QString::fromLatin1(description.identifier));
    made->setData(tag);
    if (const QString keys = QString::fromLatin1(description.shortcut); !keys.isEmpty()) {
        made->setShortcuts(QKeySequence::listFromString(keys));
    }
    // Settings, log and manual are windows of their own, without a menu.
    if (command == app::Command::Quit) {
        made->setShortcutContext(Qt::ApplicationShortcut);
    }
    made->setCheckable(commands_.state(command, tag).isChecked.has_value());
    connect(made, &QAction::triggered, this,
            [this, command, tag] { commands_.perform(command, tag); });
    window_.addAction(made);
    entries_.push_back({command, tag, made});
    return made;
}

void CommandActions::watch(QMenu& menu) {
    connect(&menu, &QMenu::aboutToShow, this, [this, &menu] { validate(menu); });
    connect(&menu, &QMenu::aboutToHide, this, [this] {
        for (const Entry& entry : entries_) {
            entry.action->setEnabled(true);
        }
    });
}

void CommandActions::addTo(QMenu& menu, app::Command command, qint64 tag) {
    menu.addAction(action(command, tag));
}

void CommandActions::addAllTo(QMenu& menu, app::Command command) {
    for (const auto& tags : app::commandTags(command)) {
        menu.addSeparator();
        auto* choice = new QActionGroup(&menu);
        for (const qint64 tag : tags) {
            addTo(menu, command, tag);
            choice->addAction(action(command, tag));
        }
    }
}

void CommandActions::validate(const QMenu& menu) const {
    const QList<QAction*> shown = menu.actions();
    for (const Entry& entry : entries_) {
        if (!shown.contains(entry.action)) {
            continue;
        }
        const app::CommandState state = commands_.state(entry.command, entry.tag);
        entry.action->setVisible(commands_.isOffered(entry.command));
        entry.action->setEnabled(state.isEnabled);
        entry.action->setCheckable(state.isChecked.has_value());
        entry.action->setChecked(state.isChecked.value_or(false));
        entry.action->setText(state.title.isEmpty() ? app::commandTitle(entry.command, entry.tag)
                                                    : state.title);
    }
}

}  // namespace ui
