#include "ui/window/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>
#include <unordered_set>

#include "app/commands/commands.h"
#include "app/commands/context_menu.h"
#include "app/lifecycle/lifecycle.h"
#include "app/main_controller.h"
#include "app/queue/state_filter.h"
#include "app/rows/rows.h"
#include "app/settings.h"
#include "app/status/queue_status.h"
#include "engine/lifecycle/download.h"
#include "links/text/typography.h"
#include "platform/base/user_defaults.h"
#include "ui/commands/command_actions.h"
#include "ui/commands/main_menu.h"
#include "ui/commands/menu_items.h"
#include "ui/details/details_splitter.h"
#include "ui/list/download_list.h"
#include "ui/list/list_dragging.h"
#include "ui/text.h"
#include "ui/toolbar/toolbar.h"
#include "ui/window/address_entry.h"
#include "ui/window/approaching_end.h"
#include "ui/window/clipboard_watch.h"
#include "ui/window/elided_label.h"
#include "ui/window/intake_progress.h"
#include "ui/window/notice_bars.h"
#include "ui/window/pasteboard_contents.h"
#include "ui/window/rubber_window.h"
#include "ui/window/scope_bar.h"
#include "ui/window/unfinished_entry.h"
#include "ui/window/window_commands.h"
#include "ui/window/window_frame.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using app::Command;

namespace ui {

MainWindow::MainWindow(app::Commands& commands)
    : commands_(commands),
      controller_(commands.surroundings().controller),
      downloadList(new DQDownloadList(controller_.rows(), this)) {
    setWindowTitle(u"Orlop[*]"_s);
    setAcceptDrops(true);
    setContextMenuPolicy(Qt::NoContextMenu);
    makeContents();
    end_ = std::make_unique<ApproachingEnd>(controller_);
    entry_ = std::make_unique<AddressEntry>(controller_, *this, *end_);
    provideWindowCommands(commands, *this, *entry_);
    details_->addDetails(*downloadList, commands);
    actions_ = std::make_unique<CommandActions>(commands, *this);
    menu_ = std::make_unique<MainMenu>(*menuBar(), *actions_, commands);
    makeStatusLine();
    connectList();

    platform::UserDefaults& defaults = commands.surroundings().defaults;
    frame_ = std::make_unique<WindowFrame>(*this, *downloadList, defaults);
    frame_->restore(usualSize());
    rubber_ = std::make_unique<RubberWindow>(*this, *downloadList, defaults);
    connect(details_, &DetailsSplitter::arrangementChanged, downloadList,
            &DQDownloadList::contentHeightChanged);
    connect(details_, &DetailsSplitter::arrangementChanged, downloadList,
            &DQDownloadList::scrollToSelection);
    clipboardWatch_ = std::make_unique<ClipboardWatch>(controller_, defaults, *notices_);
    observation_ = defaults.observe([this, &defaults](const QString& key) {
        if (key == app::settings::toolbarFilterCriterion.name()) {
            toolbarFilterScopeBar->select(defaults.get(app::settings::toolbarFilterCriterion));
        }
    });
    downloadList->setFocus();
    updateStatus();
    offerUndo(controller_.lastRemoval());
}

MainWindow::~MainWindow() = default;

QSize MainWindow::usualSize() const {
    constexpr int width = 640, shownRows = 9;
    const int around = menuBar()->sizeHint().height() + toolbar_->sizeHint().height() +
                       statusBar()->sizeHint().height();
    return {width, around + shownRows * downloadList->rowHeight()};
}

void MainWindow::makeContents() {
    toolbarFilterScopeBar =
        new ScopeBar(translated("Search:"),
                     {{u"Name"_s, translated("Name")}, {u"URL"_s, translated("URL")}}, this);
    toolbarFilterScopeBar->select(
        commands_.surroundings().defaults.get(app::settings::toolbarFilterCriterion));
    toolbarFilterScopeBar->hide();
    connect(toolbarFilterScopeBar, &ScopeBar::selected, this,
            [this](const QString& criterion) { controller_.setFilterCriterion(criterion); });

    auto* contents = new QWidget(this);
    auto* layout = new QVBoxLayout(contents);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    notices_ = new NoticeBars(Qt::TopEdge, contents);
    removals_ = new NoticeBars(Qt::BottomEdge, contents);
    layout->addWidget(notices_);
    layout->addWidget(toolbarFilterScopeBar);
    details_ = new DetailsSplitter(commands_, contents);
    layout->addWidget(details_, 1);
    layout->addWidget(removals_);
    connect(&controller_, &app::DQMainController::removalsChanged, this, &MainWindow::offerUndo);
    setCentralWidget(contents);

    toolbar_ = new MainToolbar(commands_, this);
    addToolBar(toolbar_);
    connect(toolbar_, &MainToolbar::filterTextChanged, this, [this](const QString& text) {
        lastHand_.start();
        setFilterText(text);
    });
    connect(toolbar_, &MainToolbar::filterLeft, downloadList, [this] { downloadList->setFocus(); });
}

void MainWindow::makeStatusLine() {
    statusField = new QLabel(this);
    statusField->setObjectName(u"statusField"_s);
    statusField->setIndent(6);
    totalsField = new ElidedLabel(this);
    totalsField->setObjectName(u"totalsField"_s);
    clearButton = new QPushButton(translated("Clear"), this);
    clearButton->setFlat(true);
    connect(clearButton, &QPushButton::clicked, this, [this] { controller_.clear(); });
    statusBar()->addWidget(statusField, 1);
    statusBar()->addPermanentWidget(new IntakeProgress(controller_, this));
    statusBar()->addPermanentWidget(totalsField);
    statusBar()->addPermanentWidget(clearButton);
    connect(&controller_, &app::DQMainController::statusChanged, this, &MainWindow::updateStatus);
}

void MainWindow::connectList() {
    dragging_ = std::make_unique<ListDragging>(*downloadList, controller_);
    connect(downloadList, &DQDownloadList::selectionMade, this,
            [this](const QList<qsizetype>& rows) {
                lastHand_.start();
                controller_.selectionDidChange(rows);
            });
    connect(downloadList->verticalScrollBar(), &QScrollBar::actionTriggered, this,
            [this] { lastHand_.start(); });
    connect(&controller_, &app::DQMainController::downloadsAdded, this, &MainWindow::showAdded);
    connect(downloadList, &DQDownloadList::contextMenuWanted, this, &MainWindow::showContextMenu);
    connect(downloadList, &DQDownloadList::pasteWanted, this,
            [this] { commands_.perform(Command::Paste); });
    connect(downloadList, &DQDownloadList::addWanted, this,
            [this] { commands_.perform(Command::OpenURL); });
    connect(downloadList, &DQDownloadList::removeWanted, this,
            [this] { commands_.perform(Command::Remove); });
    connect(downloadList, &DQDownloadList::pauseToggleWanted, this, [this] {
        if (!controller_.selectedDownloads().empty()) {
            commands_.perform(Command::TogglePause);
        }
    });
    // Progress comes in far more often than anybody looks at the buttons.
    toolbarUpdate_.setSingleShot(true);
    toolbarUpdate_.setInterval(100ms);
    connect(&toolbarUpdate_, &QTimer::timeout, toolbar_,
            &MainToolbar::updateToolbarQueuePauseButton);
    const auto updateSoon = [this] {
        if (!toolbarUpdate_.isActive()) {
            toolbarUpdate_.start();
        }
    };
    connect(&controller_, &app::DQMainController::statusChanged, this, updateSoon);
    connect(&controller_, &app::DQMainController::selectionChanged, this, updateSoon);
    connect(&controller_, &app::DQMainController::alreadyInList, this, &MainWindow::showKnown);
    connect(&controller_, &app::DQMainController::downloadsRestored, this,
            &MainWindow::bringIntoSight);
    toolbar_->updateToolbarQueuePauseButton();
}

void MainWindow::setFilterText(const QString& text) {
    toolbarFilterScopeBar->setVisible(!text.trimmed().isEmpty());
    controller_.setFilterText(text);
}

void MainWindow::updateStatus() {
    const app::QueueStatus status = controller_.queueStatus();
    statusField->setText(status.text);
    totalsField->setText(links::stringWithDashesForHyphens(status.totals));
    setWindowTitle(status.shortTotals.isEmpty() ? u"Orlop[*]"_s
                                                : status.shortTotals + u" – Orlop[*]"_s);
    clearButton->setVisible(status.canClear);
    clearButton->setEnabled(status.canClear);
    setWindowModified(status.isDocumentEdited);
    downloadList->setFilteredOut(controller_.isFiltering() &&
                                 controller_.numberOfHiddenDownloads() > 0);
}

/// Not under the hands of a user who selects, scrolls or types.
void MainWindow::showAdded(const app::Downloads& downloads) {
    constexpr qint64 handsOnMilliseconds = 2000;
    const bool isBusy = QApplication::mouseButtons() != Qt::NoButton ||
                        (lastHand_.isValid() && !lastHand_.hasExpired(handsOnMilliseconds));
    if (!downloads.empty() && !controller_.stateFilter().matches(*downloads.front())) {
        controller_.setStateFilter({});
    }
    if (!isBusy) {
        bringIntoSight(downloads);
    }
}

void MainWindow::offerUndo(const QString& removed) {
    const auto matter = u"removed"_s;
    if (removed.isEmpty()) {
        removals_->take(matter);
        return;
    }
    removals_->show(
        {matter, removed, translated("Undo"), [this] { commands_.perform(Command::Undo); }, 10s});
}

/// Whatever filter hides one of them goes.
void MainWindow::bringIntoSight(const app::Downloads& downloads) {
    const app::Downloads& rows = controller_.sortedAndFilteredDownloads();
    const std::unordered_set<engine::DownloadPtr> shown(rows.begin(), rows.end());
    const auto isHidden = [&](const engine::DownloadPtr& download) {
        return !shown.contains(download);
    };
    if (controller_.isFiltering() && std::any_of(downloads.begin(), downloads.end(), isHidden)) {
        if (QLineEdit* field = toolbar_->filterField()) {
            field->clear();
        }
        setFilterText({});
        controller_.setStateFilter({});
    }
    controller_.selectDownloads(downloads);
    downloadList->scrollToSelection();
    lastHand_.invalidate();
}

/// What was given once more is shown where it stands already.
void MainWindow::showKnown(const app::Downloads& downloads) {
    constexpr int noticeMilliseconds = 6000;
    bringIntoSight(downloads);
    statusBar()->showMessage(translated("Already in the list"), noticeMilliseconds);
}

void MainWindow::showContextMenu(int row, const QPoint& position) {
    QMenu menu(this);
    addMenuItems(menu, app::contextMenu(commands_, app::clickedDownloads(controller_, row)));
    downloadList->setMenuRow(row);
    menu.exec(position);
    downloadList->setMenuRow(-1);
}

void MainWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        controller_.windowWasSeen();
        entry_->openUnfinished();
    }
    QMainWindow::changeEvent(event);
}

/// What is being entered would go with the window, and with the program at the latest.
bool MainWindow::isHeldOpen() {
    constexpr int noticeMilliseconds = 6000;
    QDialog* entry = end_->isNear() ? nullptr : unfinishedEntry(*this);
    if (entry == nullptr) {
        return false;
    }
    entry->show();
    entry->raise();
    entry->activateWindow();
    statusBar()->showMessage(translated("Not closed: “%1” is still open").arg(entry->windowTitle()),
                             noticeMilliseconds);
    return true;
}

void MainWindow::closeEvent(QCloseEvent* event) {
    frame_->save();
    if (isHeldOpen()) {
        event->ignore();
        return;
    }
    const bool closes = controller_.lifecycle().windowShouldClose();
    event->setAccepted(closes && !frame_->isFading());
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->source() == nullptr && mayHoldAddresses(*event->mimeData())) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    }
}

void MainWindow::dropEvent(QDropEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(controller_.dropPasteboard(pasteboardFromMimeData(*event->mimeData())));
}

}  // namespace ui
