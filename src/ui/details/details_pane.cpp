#include "ui/details/details_pane.h"

#include <QAction>
#include <QBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QShortcut>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QToolButton>
#include <chrono>

#include "app/main_controller.h"
#include "app/rows/rows.h"
#include "engine/context.h"
#include "engine/lifecycle/download.h"
#include "ui/art/icons.h"
#include "ui/art/theme.h"
#include "ui/details/connections_model.h"
#include "ui/details/facts_model.h"
#include "ui/details/speed_curve.h"
#include "ui/details/wrapping_row.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace ui {

using app::Command;

namespace {

/// Of facts, at the least.
constexpr int fewestLines = 4;
/// In characters: from here on there is room for the curve beside the facts.
constexpr int wideEnough = 75;
constexpr auto commandProperty = "command";

/// As much room after a line of one row as after one of several.
class RoomyDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override {
        constexpr int room = 4;
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, room);
    }
};

/// One stop of the keyboard, whose lines the arrow keys walk through.
QTableView* makeTable(QAbstractItemModel& model, const QString& name, QWidget* parent) {
    auto* table = new QTableView(parent);
    table->setObjectName(name);
    table->setModel(&model);
    table->setShowGrid(false);
    table->setFrameShape(QFrame::NoFrame);
    table->setFont(noteFont(parent->font()));
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setTabKeyNavigation(false);
    table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->verticalHeader()->hide();
    table->verticalHeader()->setMinimumSectionSize(0);
    table->horizontalHeader()->setHighlightSections(false);
    return table;
}

}  // namespace

DetailsPane::DetailsPane(const app::Commands& commands, QWidget* parent)
    : QWidget(parent),
      commands_(commands),
      controller_(commands.surroundings().controller),
      factsModel_(new FactsModel(this)),
      connectionsModel_(new ConnectionsModel(this)),
      actions_(new QWidget(this)),
      hint_(new QLabel(this)),
      contents_(new QWidget(this)),
      arrangement_(new QBoxLayout(QBoxLayout::LeftToRight, contents_)) {
    setObjectName(u"detailsPane"_s);
    setAccessibleName(translated("Details"));
    makeActions();
    makeTables();
    hint_->setAlignment(Qt::AlignCenter);
    hint_->setWordWrap(true);
    hint_->setMargin(12);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* header = new QHBoxLayout;
    header->setContentsMargins(0, 0, 6, 0);
    header->addWidget(actions_, 1);
    header->addWidget(makeCloseButton(), 0, Qt::AlignTop);
    layout->addLayout(header);
    layout->addWidget(hint_, 1);
    layout->addWidget(contents_, 1);

    refresh_.setSingleShot(true);
    connect(&refresh_, &QTimer::timeout, this, &DetailsPane::refresh);
    connect(&controller_, &app::DQMainController::selectionChanged, this,
            &DetailsPane::followSelection);
    connect(&controller_, &app::DQMainController::downloadChanged, this,
            [this](const engine::DownloadPtr& download) { downloadDidChange(*download); });
}

DetailsPane::~DetailsPane() = default;

void DetailsPane::makeActions() {
    actions_->setObjectName(u"detailsActions"_s);
    auto* row = new WrappingRow(actions_);
    row->setContentsMargins(2, 2, 2, 2);
    row->setSpacing(0);
    addCommand(Command::Copy, translated("Copy Address"));
    addCommand(Command::OpenInBrowser, translated("Open in Browser"));
    addCommand(Command::ChangeAddress, translated("Change Address..."));
    addCommand(Command::Verify, translated("Checksum..."));
    addCommand(Command::LimitSpeed, translated("Speed Limit..."));
}

QToolButton* DetailsPane::makeCloseButton() {
    auto* button = new QToolButton(this);
    button->setObjectName(u"closeDetails"_s);
    button->setIcon(symbolIcon(u"DQCancel"_s));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAccessibleName(translated("Close Details"));
    button->setToolTip(translated("Close Details"));
    connect(button, &QToolButton::clicked, this, &DetailsPane::closeWanted);
    return button;
}

void DetailsPane::addCommand(Command command, const QString& text) {
    if (!commands_.isOffered(command))
        return;
    auto* button = new QToolButton(actions_);
    button->setText(text);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setProperty(commandProperty, static_cast<int>(command));
    connect(button, &QToolButton::clicked, this, [this, command] { commands_.perform(command); });
    actions_->layout()->addWidget(button);
}

void DetailsPane::makeTables() {
    facts_ = makeTable(*factsModel_, u"facts"_s, contents_);
    facts_->setAccessibleName(translated("Facts"));
    facts_->setItemDelegate(new RoomyDelegate(facts_));
    facts_->horizontalHeader()->hide();
    facts_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    facts_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    facts_->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    auto* copy = new QShortcut(QKeySequence::Copy, facts_);
    copy->setContext(Qt::WidgetShortcut);
    connect(copy, &QShortcut::activated, this, &DetailsPane::copyFacts);

    auto* side = new QWidget(contents_);
    auto* sideLayout = new QVBoxLayout(side);
    sideLayout->setContentsMargins(0, 0, 0, 0);
    sideLayout->setSpacing(0);
    curve_ = new SpeedCurve(side);
    connections_ = makeTable(*connectionsModel_, u"connections"_s, side);
    connections_->setAccessibleName(translated("Connections"));
    connections_->setWordWrap(false);
    connections_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connections_->horizontalHeader()->setStretchLastSection(true);
    connections_->verticalHeader()->setDefaultSectionSize(connections_->fontMetrics().height() + 3);
    sideLayout->addWidget(curve_, 1);
    sideLayout->addWidget(connections_, 2);

    facts_->setMinimumHeight(fewestLines * facts_->fontMetrics().lineSpacing());
    arrangement_->setContentsMargins(0, 0, 0, 0);
    arrangement_->setSpacing(0);
    arrangement_->addWidget(facts_, 1);
    arrangement_->addWidget(side, 1);
}

/// The line that is selected, or all of them.
void DetailsPane::copyFacts() {
    const QModelIndex current = facts_->currentIndex();
    const std::vector<app::Fact>& facts = factsModel_->facts();
    const bool isOne = current.isValid() && facts_->selectionModel()->hasSelection();
    const QString text =
        isOne ? facts[static_cast<std::size_t>(current.row())].value : app::plainText(facts);
    if (app::Clipboard* clipboard = commands_.surroundings().frontEnd.clipboard)
        clipboard->copy({{}, text});
}

void DetailsPane::followSelection() {
    if (!isVisible())
        return;
    const app::Downloads selected = controller_.selectedDownloads();
    shown_ = selected.size() == 1 ? selected.front() : nullptr;
    hint_->setText(selected.empty()
                       ? translated("Select a download to see what is known of it.")
                       : translated("%1 downloads are selected.").arg(selected.size()));
    refresh();
}

void DetailsPane::downloadDidChange(const engine::DQDownload& download) {
    constexpr auto soon = 200ms;
    if (isVisible() && shown_.lock().get() == &download &&
        (!refresh_.isActive() || refresh_.remainingTimeAsDuration() > soon))
        refresh_.start(soon);
}

void DetailsPane::refresh() {
    constexpr auto interval = 500ms, intervalAtRest = 1000ms;
    const engine::DownloadPtr download = shown_.lock();
    hint_->setVisible(!download);
    contents_->setVisible(download != nullptr);
    updateActions();
    refresh_.stop();
    if (!download)
        return;
    showDownload(*download);
    if (download->status() == engine::DQDownloadStatusDownloading)
        refresh_.start(interval);
    else if (!curve_->isEmpty())  // Time goes on below it.
        refresh_.start(intervalAtRest);
}

void DetailsPane::showDownload(engine::DQDownload& download) {
    const app::Rows& rows = controller_.rows();
    const platform::Seconds now = download.context().monotonicNow();
    factsModel_->setFacts(
        app::downloadFacts(download, controller_.rows().texts(), controller_.rows().attempts()));
    std::vector<app::Connection> connections = meter_.connections(download, now);
    showConnections(std::move(connections));
    curve_->setRates(rows.speeds().rates(download, now));
}

void DetailsPane::showConnections(std::vector<app::Connection> connections) {
    const int lines = static_cast<int>(connections.size());
    connectionsModel_->setConnections(std::move(connections));
    connections_->setVisible(lines > 0);
    connections_->setMaximumHeight(connections_->horizontalHeader()->sizeHint().height() +
                                   lines * connections_->verticalHeader()->defaultSectionSize());
}

void DetailsPane::updateActions() {
    // Without a selection, commands would mean all rows.
    const std::size_t selected = controller_.selectedDownloads().size();
    for (QToolButton* button : actions_->findChildren<QToolButton*>()) {
        const auto command = static_cast<Command>(button->property(commandProperty).toInt());
        if (command == Command::Copy)
            button->setText(selected > 1 ? translated("Copy Addresses")
                                         : translated("Copy Address"));
        button->setEnabled(selected > 0 && commands_.state(command).isEnabled);
    }
}

void DetailsPane::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    followSelection();
}

void DetailsPane::hideEvent(QHideEvent* event) {
    refresh_.stop();
    QWidget::hideEvent(event);
}

/// However many rows the buttons take, some facts are seen below them: a window that is too low
/// for that grows.
void DetailsPane::resizeEvent(QResizeEvent* event) {
    actions_->setMinimumHeight(actions_->heightForWidth(actions_->width()));
    arrangement_->setDirection(width() >= wideEnough * fontMetrics().averageCharWidth()
                                   ? QBoxLayout::LeftToRight
                                   : QBoxLayout::TopToBottom);
    QWidget::resizeEvent(event);
}

}  // namespace ui
