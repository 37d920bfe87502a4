#include "ui/window/main_window.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPushButton>
#include <QStatusBar>
#include <QToolBar>

#include "app/main_controller.h"
#include "app/settings.h"
#include "engine/download.h"
#include "platform/base/user_defaults.h"
#include "ui/art/icons.h"
#include "ui/list/download_list.h"
#include "ui/list/download_list_model.h"
#include "ui/text.h"
#include "ui/window/pasteboard_contents.h"
#include "ui/window/url_panel.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

const QString frameKey = u"NSWindow Frame MainWindow"_s;

void forEach(const app::Downloads& downloads, void (engine::DQDownload::*operation)()) {
    for (const engine::DownloadPtr& download : downloads) {
        (download.get()->*operation)();
    }
}

}  // namespace

MainWindow::MainWindow(app::DQMainController& controller)
    : controller_(controller), downloadList(new DQDownloadList(this)) {
    setWindowTitle(u"Orlop"_s);
    setWindowIcon(applicationIcon());
    setAcceptDrops(true);
    setCentralWidget(downloadList);
    setMinimumSize(320, 180);
    makeToolbar();
    makeMenus();
    makeStatusLine();
    connectController();
    restoreFrame();
    downloadList->setFocus();
    updateStatus();
}

MainWindow::~MainWindow() = default;

void MainWindow::makeToolbar() {
    QToolBar* toolbar = addToolBar(translated("Toolbar"));
    toolbar->setObjectName(u"Main Toolbar 3003"_s);
    toolbar->setMovable(false);
    toolbar->setIconSize({20, 20});
    QAction* add = toolbar->addAction(symbolIcon(u"add-url"_s), translated("Open URLs..."));
    connect(add, &QAction::triggered, this, [this] { showURLPanel(); });
    QAction* fromPasteboard =
        toolbar->addAction(symbolIcon(u"add-from-pasteboard"_s), translated("Add from Pasteboard"));
    connect(fromPasteboard, &QAction::triggered, this, &MainWindow::paste);
    startPause_ = toolbar->addAction(symbolIcon(u"queue-start"_s), translated("Start/Pause"));
    connect(startPause_, &QAction::triggered, this, &MainWindow::startOrPauseContext);
    auto* space = new QWidget(toolbar);
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    toolbar->addWidget(space);
    toolbarFilterField = new QLineEdit(toolbar);
    toolbarFilterField->setPlaceholderText(translated("Filter"));
    toolbarFilterField->setAccessibleName(translated("Filter"));
    toolbarFilterField->setClearButtonEnabled(true);
    toolbarFilterField->setMaximumWidth(180);
    toolbarFilterField->addAction(symbolIcon(u"filter"_s), QLineEdit::LeadingPosition);
    connect(toolbarFilterField, &QLineEdit::textChanged, this,
            [this](const QString& text) { controller_.setFilterText(text); });
    toolbar->addWidget(toolbarFilterField);
}

void MainWindow::makeMenus() {
    QMenu* file = menuBar()->addMenu(translated("&File"));
    QAction* add = file->addAction(translated("Open &URLs..."));
    add->setShortcut(QKeySequence::New);
    connect(add, &QAction::triggered, this, [this] { showURLPanel(); });
    QAction* open = file->addAction(translated("&Open Files..."));
    open->setShortcut(QKeySequence::Open);
    connect(open, &QAction::triggered, this, &MainWindow::openFilesWithPanel);
    file->addSeparator();
    QAction* close = file->addAction(translated("&Close Window"));
    close->setShortcut(QKeySequence::Close);
    connect(close, &QAction::triggered, this, &QWidget::close);
    QAction* quit = file->addAction(translated("&Quit"));
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    connect(quit, &QAction::triggered, this, [this] { controller_.terminate(); });

    QMenu* edit = menuBar()->addMenu(translated("&Edit"));
    QAction* paste = edit->addAction(translated("&Paste Addresses"));
    paste->setShortcut(QKeySequence::Paste);
    connect(paste, &QAction::triggered, this, &MainWindow::paste);
    QAction* all = edit->addAction(translated("Select &All"));
    all->setShortcut(QKeySequence::SelectAll);
    connect(all, &QAction::triggered, downloadList, &QAbstractItemView::selectAll);
    QAction* find = edit->addAction(translated("&Filter"));
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, toolbarFilterField,
            [this] { toolbarFilterField->setFocus(); });

    QMenu* view = menuBar()->addMenu(translated("&View"));
    auto* sorting = new QActionGroup(this);
    static constexpr const char* criteria[] = {"Unsorted", "By Name", "By Progress", "By Host",
                                               "By Address"};
    for (qint64 tag = 0; tag < 5; ++tag) {
        QAction* item = view->addAction(translated(criteria[tag]));
        item->setCheckable(true);
        sorting->addAction(item);
        item->setChecked(platform::standardDefaults().get(app::settings::sortingCriterion) == tag);
        connect(item, &QAction::triggered, this, [this, tag] { controller_.changeSorting(tag); });
    }

    QMenu* queue = menuBar()->addMenu(translated("&Queue"));
    const auto forContext = [&](const char* title, engine::StatusMask mask,
                                void (engine::DQDownload::*operation)()) {
        QAction* item = queue->addAction(translated(title));
        connect(item, &QAction::triggered, this, [this, mask, operation] {
            forEach(controller_.contextDownloadsMatchingStatusMask(mask), operation);
        });
        return item;
    };
    forContext("&Start", engine::DQDownloadStatusPaused, &engine::DQDownload::addToQueue);
    forContext("&Pause", engine::activeStatuses, &engine::DQDownload::pause);
    queue->addSeparator();
    QAction* clear = queue->addAction(translated("&Clear"));
    connect(clear, &QAction::triggered, this, [this] { controller_.clear(); });
}

void MainWindow::makeStatusLine() {
    statusField = new QLabel(this);
    statusField->setObjectName(u"statusField"_s);
    clearButton = new QPushButton(translated("Clear"), this);
    clearButton->setFlat(true);
    connect(clearButton, &QPushButton::clicked, this, [this] { controller_.clear(); });
    statusBar()->addWidget(statusField, 1);
    statusBar()->addPermanentWidget(clearButton);
}

void MainWindow::connectController() {
    connect(&controller_, &app::DQMainController::statusChanged, this, &MainWindow::updateStatus);
    connect(downloadList, &DQDownloadList::selectionMade, this,
            [this](const QList<qsizetype>& rows) { controller_.selectionDidChange(rows); });
    connect(downloadList, &DQDownloadList::contextMenuWanted, this, &MainWindow::showContextMenu);
    connect(downloadList, &DQDownloadList::removeWanted, this, &MainWindow::removeContext);
}

void MainWindow::updateStatus() {
    const auto unfinished = controller_.downloadsMatchingStatusMask(engine::unfinishedStatuses);
    const auto count = static_cast<qsizetype>(unfinished.size());
    qsizetype running = 0;
    for (const engine::DownloadPtr& download : unfinished) {
        running += download->status() == engine::DQDownloadStatusDownloading ? 1 : 0;
    }
    QString text;
    if (running > 0 && count > running) {
        text = QString::asprintf(translated("%d of %d downloads").toUtf8().constData(),
                                 static_cast<int>(running), static_cast<int>(count));
    } else if (count == 1) {
        text = translated("1 download");
    } else if (count > 1) {
        text = QString::asprintf(translated("%d downloads").toUtf8().constData(),
                                 static_cast<int>(count));
    }
    statusField->setText(text);
    const bool canClear = count != controller_.numberOfDownloads();
    clearButton->setVisible(canClear);
    clearButton->setEnabled(canClear);
}

void MainWindow::showURLPanel(const QString& text) {
    URLPanel panel(this, text);
    if (panel.exec() == QDialog::Accepted) {
        controller_.openText(panel.text());
    }
}

void MainWindow::openFilesWithPanel() {
    const QStringList paths = QFileDialog::getOpenFileNames(this, translated("Open Files"));
    if (!paths.isEmpty()) {
        controller_.openFiles(paths, true, true);
    }
}

void MainWindow::paste() {
    const QMimeData* contents = QApplication::clipboard()->mimeData();
    if (contents == nullptr) {
        return;
    }
    if (const auto text = controller_.openURLFromPasteboard(pasteboardFromMimeData(*contents))) {
        showURLPanel(*text);
    }
}

void MainWindow::startOrPauseContext() {
    const auto active = controller_.contextDownloadsMatchingStatusMask(engine::activeStatuses);
    if (active.empty()) {
        forEach(controller_.contextDownloadsMatchingStatusMask(engine::DQDownloadStatusPaused),
                &engine::DQDownload::addToQueue);
    } else {
        forEach(active, &engine::DQDownload::pause);
    }
}

void MainWindow::removeContext() {
    const app::Downloads selected = controller_.selectedDownloads();
    if (selected.empty()) {
        QApplication::beep();
    }
    forEach(selected, &engine::DQDownload::remove);
}

void MainWindow::showContextMenu(int row, const QPoint& position) {
    const engine::DownloadPtr clicked = downloadList->rows().download(row);
    if (!clicked) {
        return;
    }
    app::Downloads downloads = controller_.selectedDownloads();
    if (std::find(downloads.begin(), downloads.end(), clicked) == downloads.end()) {
        downloads = {clicked};
    }
    QMenu menu(this);
    const auto add = [&](const char* title, void (engine::DQDownload::*operation)()) {
        connect(menu.addAction(translated(title)), &QAction::triggered, this,
                [downloads, operation] { forEach(downloads, operation); });
    };
    if (clicked->status() < 5) {
        add(clicked->status() == engine::DQDownloadStatusPaused ? "Start Download"
                                                                : "Pause Download",
            &engine::DQDownload::togglePause);
    } else if (clicked->status() == engine::DQDownloadStatusAborted) {
        connect(menu.addAction(translated("Retry")), &QAction::triggered, this,
                [this, downloads] { controller_.retry(downloads); });
    } else if (clicked->fileExists()) {
        add("Open", &engine::DQDownload::open);
        add("Show in Folder", &engine::DQDownload::reveal);
        add("Move to Trash", &engine::DQDownload::removeAndMoveToTrash);
    }
    add("Remove", &engine::DQDownload::remove);
    menu.addSeparator();
    add("Copy URL", &engine::DQDownload::copyOriginalURL);
    menu.exec(position);
}

void MainWindow::saveFrame() const {
    platform::standardDefaults().setObject(frameKey, saveGeometry());
}

void MainWindow::restoreFrame() {
    const QByteArray frame = platform::standardDefaults().objectForKey(frameKey).toByteArray();
    if (frame.isEmpty() || !restoreGeometry(frame)) {
        resize(460, 420);
    }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    saveFrame();
    event->ignore();
    controller_.terminate();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (controller_.canDropPasteboard(pasteboardFromMimeData(*event->mimeData()))) {
        event->acceptProposedAction();
    }
}

void MainWindow::dropEvent(QDropEvent* event) {
    if (controller_.dropPasteboard(pasteboardFromMimeData(*event->mimeData()))) {
        event->acceptProposedAction();
    }
}

}  // namespace ui
