#include "ui/log/log_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QListView>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QStandardPaths>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

#include "app/settings.h"
#include "ui/log/log_delegate.h"
#include "ui/log/log_find_bar.h"
#include "ui/log/log_model.h"
#include "ui/settings.h"
#include "ui/text.h"
#include "ui/window/window_frame.h"

namespace ui {

using namespace Qt::Literals::StringLiterals;
using diagnostics::LogRow;

namespace {

QToolButton* toolButton(const QString& title, const QString& toolTip, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setText(title);
    button->setToolTip(toolTip);
    button->setAutoRaise(true);
    return button;
}

}  // namespace

LogWindow::LogWindow(platform::UserDefaults& defaults)
    : defaults_(defaults),
      source_(diagnostics::makeLogToolSource()),
      reader_({defaults, platform::mainRunLoop(), *source_, u"Orlop"_s}),
      model_(new LogModel(this)),
      list_(new QListView(this)),
      details_(new QPlainTextEdit(this)),
      findBar_(new LogFindBar(*list_, this)) {
    reader_.setDebugLoggingUserDefaultName(app::settings::debugLog.name());
    makeList();
    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->addWidget(list_);
    splitter->addWidget(details_);
    splitter->setStretchFactor(0, 1);
    splitter->setSizes({400, 80});
    splitter->setChildrenCollapsible(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addWidget(makeToolbar());
    layout->addWidget(findBar_);
    layout->addWidget(splitter, 1);
    addKeys();
    resize(QSize(820, 520).boundedTo(roomForWindows(*QWidget::screen()).size()));
    restoreGeometry(QByteArray::fromBase64(defaults.get(settings::logWindowFrame).toLatin1()));
    reader_.setDisplay(
        {[this] { updateRows(); }, [this] { updateState(); }, [this] { updateButtons(); }});
    applyShown();
    updateState();
}

LogWindow::~LogWindow() {
    reader_.setDisplay({});
}

void LogWindow::makeList() {
    model_->setWording(reader_.wording());
    list_->setModel(model_);
    list_->setItemDelegate(new LogDelegate(list_));
    list_->setUniformItemSizes(true);
    list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setFrameShape(QFrame::NoFrame);
    list_->setAccessibleName(translated("Log Lines"));
    details_->setReadOnly(true);
    details_->setFrameShape(QFrame::NoFrame);
    details_->setPlaceholderText(translated("The lines selected above are shown here whole."));
    details_->setAccessibleName(translated("Selected Lines"));
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { showDetails(); });
}

QWidget* LogWindow::makeToolbar() {
    auto* bar = new QWidget(this);
    findEarlierResultsButton =
        toolButton(translated("Earlier"), translated("Find Earlier Messages"), bar);
    clearButton = toolButton(translated("Clear"), translated("Clear"), bar);
    saveButton = toolButton(translated("Save..."), translated("Save Log"), bar);
    auto* view = toolButton(translated("View"), translated("What Is Shown of the Lines"), bar);
    view->setMenu(makeViewMenu());
    view->setPopupMode(QToolButton::InstantPopup);
    spinner = new QProgressBar(bar);
    spinner->setRange(0, 0);
    spinner->setTextVisible(false);
    spinner->setFixedWidth(60);
    spinner->setAccessibleName(translated("Finding Older Messages"));
    shown_ = new QComboBox(bar);
    shown_->addItems(
        {translated("All Lines"), translated("Without Debug Lines"), translated("Problems Only")});
    shown_->setAccessibleName(translated("Lines Shown"));
    debugLoggingSwitch = new QCheckBox(translated("&Debug Logging"), bar);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->addWidget(findEarlierResultsButton);
    layout->addWidget(spinner);
    layout->addWidget(clearButton);
    layout->addWidget(saveButton);
    layout->addWidget(view);
    layout->addStretch();
    layout->addWidget(shown_);
    layout->addWidget(debugLoggingSwitch);
    connect(findEarlierResultsButton, &QToolButton::clicked, this,
            [this] { reader_.findEarlierResults(); });
    connect(clearButton, &QToolButton::clicked, this, [this] { reader_.clear(); });
    connect(saveButton, &QToolButton::clicked, this, [this] { save(); });
    connect(shown_, &QComboBox::activated, this, [this] {
        applyShown();
        reader_.displayLog();
    });
    connect(debugLoggingSwitch, &QCheckBox::clicked, this,
            [this] { reader_.toggleDebugLogging(); });
    return bar;
}

QMenu* LogWindow::makeViewMenu() {
    auto* menu = new QMenu(this);
    const auto addSwitch = [&](const QString& title, auto isOn, auto toggle) {
        QAction* item = menu->addAction(title, this, [this, toggle] { (reader_.*toggle)(); });
        item->setCheckable(true);
        connect(menu, &QMenu::aboutToShow, item,
                [this, item, isOn] { item->setChecked((reader_.*isOn)()); });
    };
    using Reader = diagnostics::ILRIntegratedLogReader;
    addSwitch(translated("&Names of Senders"), &Reader::showsSender, &Reader::toggleMessageSender);
    addSwitch(translated("&Equal Messages as One"), &Reader::coalesces,
              &Reader::toggleMessageCoalescing);
    menu->addSeparator();
    menu->addAction(translated("&Find..."), this, [this] { findBar_->open(); });
    return menu;
}

void LogWindow::addKeys() {
    const auto add = [this](const QKeySequence& key, QWidget* where, auto act) {
        connect(new QShortcut(key, where, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
                &QShortcut::activated, this, act);
    };
    add(QKeySequence::Find, this, [this] { findBar_->open(); });
    add(QKeySequence::Close, this, [this] { close(); });
    add(QKeySequence::Save, this, [this] { saveButton->click(); });
    add(QKeySequence::Copy, list_, [this] { copySelection(); });
    add(QKeySequence(Qt::Key_Return), list_, [this] { saveButton->click(); });
}

/// What is filtered by the tool itself.
void LogWindow::applyShown() {
    diagnostics::ILRIntegratedLogReaderDelegate delegate;
    delegate.filteringLevel = [this] { return shown_->currentIndex() == Everything ? 2 : 0; };
    delegate.filteringPredicate = [this] {
        return shown_->currentIndex() == ProblemsOnly ? diagnostics::problemPredicate() : QString();
    };
    reader_.setDelegate(std::move(delegate));
}

void LogWindow::displayLog() {
    if (!reader_.displayLog()) {
        QMessageBox::warning(this, translated("Log Not Supported"),
                             translated("The program that reads the log, orlop-log, is missing."));
        return;
    }
    show();
    raise();
    activateWindow();
    list_->setFocus();
}

void LogWindow::closeEvent(QCloseEvent* event) {
    defaults_.set(settings::logWindowFrame, QString::fromLatin1(saveGeometry().toBase64()));
    reader_.close();
    QWidget::closeEvent(event);
}

void LogWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        list_->doItemsLayout();
}

LogWindow::Place LogWindow::place() const {
    constexpr int nearEnd = 5;
    const QScrollBar& bar = *list_->verticalScrollBar();
    const QModelIndex top = list_->indexAt({1, 1});
    return {bar.value() > bar.maximum() - nearEnd, top, list_->visualRect(top).top()};
}

void LogWindow::restore(const Place& place) {
    if (place.isAtEnd) {
        list_->scrollToBottom();
    } else if (place.top.isValid()) {
        list_->scrollTo(place.top, QAbstractItemView::PositionAtTop);
        QScrollBar& bar = *list_->verticalScrollBar();
        bar.setValue(bar.value() - place.offset);
    }
}

void LogWindow::updateRows() {
    const Place before = place();
    model_->setWording(reader_.wording());
    model_->setHeader(headerText());
    model_->setRows(reader_.rows());
    list_->doItemsLayout();
    restore(before);
    updateButtons();
}

void LogWindow::updateState() {
    const QString title = translated("%1 Log").arg(u"Orlop"_s);
    const bool isReading = reader_.isReadingArchive();
    setWindowTitle(isReading ? title + translated(" — Finding Older Messages…") : title);
    findEarlierResultsButton->setEnabled(!isReading);
    spinner->setVisible(isReading);
    updateButtons();
}

void LogWindow::updateButtons() {
    const bool hasEntries = reader_.hasLogEntries();
    clearButton->setText(hasEntries ? translated("Clear") : translated("Stop"));
    clearButton->setToolTip(clearButton->text());
    clearButton->setVisible(hasEntries || reader_.isReadingArchive());
    saveButton->setVisible(hasEntries);
    const bool canChange = reader_.canChangeDebugLogging();
    debugLoggingSwitch->setChecked(reader_.isDebugLoggingEnabled());
    debugLoggingSwitch->setEnabled(canChange);
    debugLoggingSwitch->setVisible(canChange || debugLoggingSwitch->isChecked());
}

QString LogWindow::headerText() const {
    const auto time = reader_.updateTime();
    if (!time)
        return {};
    const QString moment = diagnostics::logMomentText(*time, reader_.wording().today);
    const int days = reader_.numberOfDays();
    if (days < 0)
        return translated("⇤ %1…").arg(moment);
    if (days == 0)
        return translated("⇤ 1 hour before %1…").arg(moment);
    if (days == 1)
        return translated("⇤ 1 day before %1…").arg(moment);
    return translated("⇤ %1 days before %2…").arg(days).arg(moment);
}

QString LogWindow::selectedText(qsizetype mostLines) const {
    QModelIndexList selected = list_->selectionModel()->selectedIndexes();
    std::sort(selected.begin(), selected.end());
    QStringList lines;
    for (const QModelIndex& index : selected.first(std::min(selected.size(), mostLines)))
        lines.append(index.data().toString().replace(QChar::LineSeparator, u'\n'));
    return lines.join(u'\n');
}

void LogWindow::showDetails() {
    constexpr qsizetype mostShown = 100;
    details_->setPlainText(selectedText(mostShown));
}

void LogWindow::copySelection() const {
    QApplication::clipboard()->setText(selectedText(std::numeric_limits<qsizetype>::max()));
}

void LogWindow::save() {
    if (!saveButton->isVisible())
        return;
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString path =
        QFileDialog::getSaveFileName(this, translated("Save Log"), folder + u"/Log.plist"_s,
                                     translated("Property Lists (%1)").arg(u"*.plist"_s));
    if (!path.isEmpty() && !reader_.save(path))
        QMessageBox::warning(this, translated("Save Log"),
                             translated("The log cannot be saved as %1.").arg(path));
}

}  // namespace ui
