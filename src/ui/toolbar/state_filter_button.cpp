#include "ui/toolbar/state_filter_button.h"

#include <QMenu>

#include "app/main_controller.h"
#include "links/paths/path_components.h"
#include "platform/files/files.h"
#include "ui/details/facts_model.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

using app::RowState;
using app::StateFilter;

namespace {

QString stateTitle(RowState state) {
    switch (state) {
        case RowState::Active:
            return translated("Active");
        case RowState::Waiting:
            return translated("Waiting");
        case RowState::Failed:
            return translated("Failed");
        case RowState::Done:
            break;
    }
    return translated("Done");
}

/// In the button there is no room for more.
QString filterTitle(const StateFilter& filter) {
    if (!filter.folder.isEmpty())
        return links::lastPathComponent(filter.folder);
    return filter.state ? stateTitle(*filter.state) : translated("All");
}

}  // namespace

StateFilterButton::StateFilterButton(app::DQMainController& controller, QWidget* parent)
    : QToolButton(parent), controller_(controller), menu_(new QMenu(this)) {
    setObjectName(u"stateFilter"_s);
    setPopupMode(QToolButton::InstantPopup);
    setToolButtonStyle(Qt::ToolButtonTextOnly);
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
    setToolTip(translated("Which rows are shown"));
    setMenu(menu_);
    connect(menu_, &QMenu::aboutToShow, this, &StateFilterButton::buildMenu);
    connect(&controller_, &app::DQMainController::stateFilterChanged, this,
            &StateFilterButton::followFilter);
    followFilter();
}

void StateFilterButton::buildMenu() {
    menu_->clear();
    const app::StateCounts counts = app::stateCounts(controller_.downloads());
    addChoice(translated("All"), controller_.numberOfDownloads(), {});
    for (const RowState state :
         {RowState::Active, RowState::Waiting, RowState::Failed, RowState::Done})
        addChoice(stateTitle(state), counts.states.at(static_cast<std::size_t>(state)),
                  {state, {}});
    constexpr std::size_t mostFolders = 20;
    if (counts.folders.empty() || counts.folders.size() > mostFolders)
        return;
    menu_->addSeparator();
    for (const auto& [folder, count] : counts.folders)
        addChoice(isolatedPlace(platform::abbreviateWithTilde(folder)).replace(u'&', u"&&"_s),
                  count, {{}, folder});
}

void StateFilterButton::addChoice(const QString& title, qsizetype count,
                                  const StateFilter& filter) {
    QAction* choice = menu_->addAction(u"%1 (%2)"_s.arg(title, QString::number(count)), this,
                                       [this, filter] { controller_.setStateFilter(filter); });
    choice->setCheckable(true);
    choice->setChecked(controller_.stateFilter() == filter);
}

void StateFilterButton::followFilter() {
    constexpr int longest = 18;
    const QString title = filterTitle(controller_.stateFilter());
    setText(fontMetrics()
                .elidedText(title, Qt::ElideMiddle, longest * fontMetrics().averageCharWidth())
                .replace(u'&', u"&&"_s));
    setAccessibleName(translated("Which rows are shown") + u": "_s + title);
    QFont font = this->font();
    font.setBold(controller_.stateFilter().isOn());
    setFont(font);
}

}  // namespace ui
