#include "ui/toolbar/toolbar.h"

#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>
#include <QWidgetAction>

#include "app/commands/commands.h"
#include "app/commands/context_menu.h"
#include "engine/workers/throttle.h"
#include "platform/base/user_defaults.h"
#include "ui/art/icons.h"
#include "ui/commands/menu_items.h"
#include "ui/text.h"
#include "ui/toolbar/segmented_control.h"
#include "ui/toolbar/state_filter_button.h"
#include "ui/toolbar/toolbar_editor.h"

using namespace Qt::Literals::StringLiterals;
using app::Command;

namespace ui {
namespace {

namespace item = toolbaritem;

constexpr int leastFilterWidth = 80, mostFilterWidth = 130;
constexpr QSize symbolSize(20, 20);

QString plainTitle(Command command) {
    return app::commandTitle(command).remove(u'&');
}

QToolButton* toolButton(const QString& item, const QString& symbol) {
    auto* button = new QToolButton;
    button->setIcon(symbolIcon(symbol));
    button->setIconSize(symbolSize);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setToolTip(ToolbarLayout::label(item));
    button->setAccessibleName(ToolbarLayout::label(item));
    return button;
}

/// Where a menu opens that belongs to a button.
QPoint belowButton(const QWidget& button, const QMenu& menu) {
    const int left =
        button.layoutDirection() == Qt::RightToLeft ? button.width() - menu.sizeHint().width() : 0;
    return button.mapToGlobal(QPoint(left, button.height()));
}

}  // namespace

MainToolbar::MainToolbar(const app::Commands& commands, QWidget* parent)
    : QToolBar(translated("Toolbar"), parent),
      commands_(commands),
      layout_(commands.surroundings().defaults,
              commands.surroundings().controller.queue().throttle().isAvailable()) {
    setObjectName(layout_.identifier());
    setMovable(false);
    makeSegments();
    makeButtons();
    makeFilterField();
    rebuild();
    updateSegments();
    observation_ = commands.surroundings().defaults.observe([this](const QString& key) {
        if (key == layout_.identifier() && layout_.items() != shownItems_) {
            rebuild();
        }
        updateSegments();
    });
}

void MainToolbar::keep(const QString& item, QWidget* widget) {
    auto* action = new QWidgetAction(this);
    action->setText(ToolbarLayout::label(item));
    action->setDefaultWidget(widget);
    widget->setObjectName(item);
    items_[item] = action;
}

void MainToolbar::makeSegments() {
    const auto make = [this](const QString& item, const SegmentedControl::Segment& first,
                             const SegmentedControl::Segment& second,
                             const std::function<Command(int segment)>& commandOf,
                             const QString& section) {
        auto* control = new SegmentedControl({first, second}, !section.isEmpty(), nullptr);
        control->setAccessibleName(ToolbarLayout::label(item));
        connect(control, &SegmentedControl::segmentClicked, this, [=, this](int segment) {
            commands_.perform(commandOf(segment));
            updateSegments();
            if (!section.isEmpty()) {
                Q_EMIT shortcutUsed(section);
            }
        });
        keep(item, control);
        return control;
    };
    const auto either = [](Command first, Command second) {
        return [=](int segment) { return segment == 1 ? second : first; };
    };
    toolbarQueuePauseButton = make(
        item::queuePause, {u"queue-start"_s, plainTitle(Command::QueuePaused)},
        {u"queue-pause"_s, plainTitle(Command::PauseAll)},
        [this](int segment) { return segment == 1 ? pauseCommand() : Command::QueuePaused; }, {});
    connect(toolbarQueuePauseButton, &SegmentedControl::segmentMenuWanted, this,
            &MainToolbar::showPauseMenu);
    toolbarScheduleButton = make(
        item::autoQueuePause, {u"schedule-queue"_s, plainTitle(Command::ToggleScheduledQueuing)},
        {u"schedule-pause"_s, plainTitle(Command::ToggleScheduledPausing)},
        either(Command::ToggleScheduledQueuing, Command::ToggleScheduledPausing), u"Schedule"_s);
    toolbarAccelerateThrottleButton =
        make(item::accelerateThrottle, {u"accelerate"_s, plainTitle(Command::ToggleAcceleration)},
             {u"throttle"_s, plainTitle(Command::ToggleThrottle)},
             either(Command::ToggleAcceleration, Command::ToggleThrottle), u"Speed"_s);
}

void MainToolbar::makeButtons() {
    QToolButton* paste = toolButton(item::addFromPasteboard, u"add-from-pasteboard"_s);
    connect(paste, &QToolButton::clicked, this,
            [this] { commands_.perform(Command::OpenURLFromPasteboard); });
    keep(item::addFromPasteboard, paste);

    QToolButton* toolbarContextSelector = toolButton(item::moreActions, u"more-actions"_s);
    connect(toolbarContextSelector, &QToolButton::clicked, this, [this, toolbarContextSelector] {
        QMenu menu(this);
        addMenuItems(menu, app::contextMenu(
                               commands_, commands_.surroundings().controller.selectedDownloads()));
        menu.exec(belowButton(*toolbarContextSelector, menu));
    });
    keep(item::moreActions, toolbarContextSelector);

    QToolButton* customize = toolButton(item::customize, u"general"_s);
    connect(customize, &QToolButton::clicked, this, &MainToolbar::runCustomizationPalette);
    keep(item::customize, customize);
}

void MainToolbar::makeFilterField() {
    toolbarFilterField = new QLineEdit;
    toolbarFilterField->setPlaceholderText(translated("Filter"));
    toolbarFilterField->setAccessibleName(translated("Filter"));
    toolbarFilterField->setClearButtonEnabled(true);
    toolbarFilterField->setMinimumWidth(leastFilterWidth);
    toolbarFilterField->setMaximumWidth(mostFilterWidth);
    toolbarFilterField->addAction(symbolIcon(u"filter"_s), QLineEdit::LeadingPosition);
    toolbarFilterField->installEventFilter(this);
    connect(toolbarFilterField, &QLineEdit::textChanged, this, &MainToolbar::filterTextChanged);
    auto* filter = new QWidget;
    filter->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
    auto* layout = new QHBoxLayout(filter);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new StateFilterButton(commands_.surroundings().controller, filter));
    layout->addWidget(toolbarFilterField);
    keep(item::filter, filter);
}

void MainToolbar::rebuild() {
    for (QAction* action : actions()) {
        removeAction(action);
        if (std::none_of(items_.begin(), items_.end(),
                         [&](const auto& kept) { return kept.second == action; })) {
            delete action;
        }
    }
    shownItems_ = layout_.items();
    for (const QString& name : shownItems_) {
        if (const auto kept = items_.find(name); kept != items_.end()) {
            addAction(kept->second);
        } else if (name == item::separator) {
            addSeparator();
        } else {
            auto* space = new QWidget(this);
            space->setSizePolicy(name == item::space ? QSizePolicy::Fixed : QSizePolicy::Expanding,
                                 QSizePolicy::Preferred);
            space->setMinimumWidth(name == item::space ? symbolSize.width() : 0);
            addWidget(space);
        }
    }
    // What cannot be seen does not filter.
    if (filterField() == nullptr) {
        toolbarFilterField->clear();
        commands_.surroundings().controller.setStateFilter({});
    }
}

QLineEdit* MainToolbar::filterField() const {
    return layout_.items().contains(item::filter) ? toolbarFilterField : nullptr;
}

void MainToolbar::runCustomizationPalette() {
    ToolbarEditor editor(layout_, this);
    connect(&editor, &ToolbarEditor::changed, this, &MainToolbar::rebuild);
    editor.exec();
}

void MainToolbar::updateToolbarQueuePauseButton() {
    // Of ten thousand rows only one copy.
    const app::Downloads context = commands_.surroundings().controller.contextDownloads();
    const auto any = [&context](engine::StatusMask mask) {
        return engine::anyDownloadFromCollectionMatchesStatusMask(context, mask);
    };
    toolbarQueuePauseButton->setSegmentEnabled(0, any(engine::DQDownloadStatusPaused));
    toolbarQueuePauseButton->setSegmentEnabled(1, any(engine::activeStatuses));
    const QString key =
        QKeySequence(QString::fromLatin1(app::commandDescription(Command::PauseAll).shortcut))
            .toString(QKeySequence::NativeText);
    toolbarQueuePauseButton->setSegmentToolTip(
        1, any(engine::DQDownloadStatusQueued)
               ? translated("Pause what waits; with Shift, what runs as well (%1)").arg(key)
               : translated("Pause what runs (%1)").arg(key));
}

/// A click is for what waits; with Shift, or where nothing does, it is for what runs as well.
Command MainToolbar::pauseCommand() const {
    const bool isForAll =
        commands_.surroundings().frontEnd.presence.areAlternateFunctionalityModifiersHeld() ||
        !commands_.state(Command::PauseQueued).isEnabled;
    return isForAll ? Command::PauseAll : Command::PauseQueued;
}

void MainToolbar::showPauseMenu(int segment, const QPoint& position) {
    if (segment != 1) {
        return;
    }
    QMenu menu(this);
    addMenuItems(menu, {app::commandItem(commands_, Command::PauseQueued),
                        app::commandItem(commands_, Command::PauseAll)});
    menu.exec(position);
}

void MainToolbar::updateSegments() {
    const auto show = [this](SegmentedControl& control, int segment, Command command) {
        const app::CommandState state = commands_.state(command);
        control.setSegmentChecked(segment, state.isChecked.value_or(false));
        control.setSegmentEnabled(segment, state.isEnabled);
    };
    show(*toolbarScheduleButton, 0, Command::ToggleScheduledQueuing);
    show(*toolbarScheduleButton, 1, Command::ToggleScheduledPausing);
    show(*toolbarAccelerateThrottleButton, 0, Command::ToggleAcceleration);
    show(*toolbarAccelerateThrottleButton, 1, Command::ToggleThrottle);
}

void MainToolbar::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    connect(menu.addAction(app::commandTitle(Command::CustomizeToolbar)), &QAction::triggered, this,
            &MainToolbar::runCustomizationPalette);
    menu.exec(event->globalPos());
}

bool MainToolbar::eventFilter(QObject* watched, QEvent* event) {
    if (watched == toolbarFilterField && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape) {
            toolbarFilterField->clear();
        }
        if (key == Qt::Key_Escape || key == Qt::Key_Down || key == Qt::Key_Return ||
            key == Qt::Key_Enter) {
            Q_EMIT filterLeft();
            return true;
        }
    }
    return QToolBar::eventFilter(watched, event);
}

}  // namespace ui
