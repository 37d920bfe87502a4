#include "ui/details/details_splitter.h"

#include "app/commands/commands.h"
#include "platform/base/user_defaults.h"
#include "ui/details/details_pane.h"
#include "ui/settings.h"

namespace ui {

using app::Command;
using app::CommandState;

DetailsSplitter::DetailsSplitter(app::Commands& commands, QWidget* parent)
    : QSplitter(parent), defaults_(commands.surroundings().defaults) {
    setObjectName(QStringLiteral("detailsSplitter"));
    setChildrenCollapsible(false);
    setHandleWidth(1);
    platform::UserDefaults& defaults = defaults_;
    commands.provide(Command::ToggleDetails,
                     {[&defaults](qint64) {
                          defaults.set(settings::detailsPane, !defaults.get(settings::detailsPane));
                      },
                      [&defaults](qint64) -> CommandState {
                          return {true, defaults.get(settings::detailsPane), {}};
                      }});
    commands.provide(Command::ToggleDetailsBeside,
                     {[&defaults](qint64) {
                          defaults.set(settings::detailsPaneBeside,
                                       !defaults.get(settings::detailsPaneBeside));
                      },
                      [&defaults](qint64) -> CommandState {
                          return {defaults.get(settings::detailsPane),
                                  defaults.get(settings::detailsPaneBeside),
                                  {}};
                      }});
    connect(this, &QSplitter::splitterMoved, this, &DetailsSplitter::keepSize);
}

void DetailsSplitter::addDetails(QWidget& list, const app::Commands& commands) {
    addWidget(&list);
    setStretchFactor(0, 1);
    pane_ = new DetailsPane(commands, this);
    pane_->hide();
    addWidget(pane_);
    setStretchFactor(1, 0);
    connect(pane_, &DetailsPane::closeWanted, this, [this, &list] {
        defaults_.set(settings::detailsPane, false);
        list.setFocus();
    });
    observation_ = defaults_.observe([this](const QString& key) {
        if (key == settings::detailsPane.name() || key == settings::detailsPaneBeside.name()) {
            followSettings();
        }
    });
    followSettings();
}

void DetailsSplitter::followSettings() {
    const bool isBeside = defaults_.get(settings::detailsPaneBeside);
    setOrientation(isBeside ? Qt::Horizontal : Qt::Vertical);
    pane_->setVisible(defaults_.get(settings::detailsPane));
    const auto wanted = static_cast<int>(
        defaults_.get(isBeside ? settings::detailsPaneWidth : settings::detailsPaneHeight));
    const int room = isBeside ? width() : height();
    // The list keeps at least as much as the details get.
    const int given = std::min(wanted, room / 2);
    setSizes({room - given, given});
    Q_EMIT arrangementChanged();
}

/// Only now is there any room to be shared.
void DetailsSplitter::showEvent(QShowEvent* event) {
    QSplitter::showEvent(event);
    followSettings();
}

void DetailsSplitter::keepSize() {
    const QList<int> shares = sizes();
    defaults_.set(
        orientation() == Qt::Horizontal ? settings::detailsPaneWidth : settings::detailsPaneHeight,
        static_cast<qint64>(shares.last()));
}

}  // namespace ui
