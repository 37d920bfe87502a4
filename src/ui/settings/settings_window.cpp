#include "ui/settings/settings_window.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QStackedWidget>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>

#include "ui/art/icons.h"
#include "ui/settings.h"
#include "ui/settings/sections.h"
#include "ui/text.h"
#include "ui/window/window_frame.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

const QString experimentalSection = u"Experimental"_s;
constexpr int narrowestPage = 620;
constexpr int lowestWindow = 240;
constexpr int toolbarIconSize = 24;
/// Left free on the screen for panels and the window's frame.
constexpr int screenMargin = 80;

}  // namespace

SettingsWindow::SettingsWindow(app::DQMainController& controller, platform::UserDefaults& defaults,
                               QWidget* parent)
    : QMainWindow(parent),
      binder_(defaults),
      context_{controller, defaults, binder_,
               [this](const QString& identifier) { selectSection(identifier); }},
      toolbar_(addToolBar(translated("Sections"))),
      actions_(new QActionGroup(this)),
      pages_(new QStackedWidget(this)) {
    setWindowTitle(translated("Settings"));
    setWindowIcon(applicationIcon());
    // It is as large as its section.
    setWindowFlag(Qt::WindowMaximizeButtonHint, false);
    setCentralWidget(pages_);
    setContextMenuPolicy(Qt::NoContextMenu);
    toolbar_->setObjectName(u"Preferences Toolbar 3016 (Independent)"_s);
    toolbar_->setMovable(false);
    toolbar_->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    toolbar_->setIconSize({toolbarIconSize, toolbarIconSize});
    addSection("General", translated("General"), "general", makeGeneralSection);
    addSection("Speed", translated("Speed"), "DQGauge", makeSpeedSection);
    addSection("Schedule", translated("Schedule"), "DQHistory", makeScheduleSection);
    addSection("Feedback", translated("Behaviors"), "DQFeedback", makeBehaviorsSection);
    addSection("History", translated("History"), "documents", makeHistorySection);
    addSection("Advanced", translated("Advanced"), "advanced", makeAdvancedSection);
    addSection("Updates", translated("Updates"), "updates", makeUpdatesSection);
    // Called the same in every language, as those who write about it call it.
    addSection("Experimental", experimentalSection, "experimental", makeDownloadPagesSection);
    makeShortcuts();
    orderFocus();
    toolbar_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(toolbar_, &QWidget::customContextMenuRequested, this, &SettingsWindow::showToolbarMenu);
    binder_.follow({settings::preferencesToolbar.name()}, this, [this] { updateToolbar(); });
    selectSection({});
}

SettingsWindow::~SettingsWindow() = default;

void SettingsWindow::addSection(const char* identifier, const QString& title, const char* icon,
                                MakePage make) {
    auto* area = new QScrollArea(pages_);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    SettingsPage* page = make(context_, area);
    area->setWidget(page);
    area->setAccessibleName(title);
    pages_->addWidget(area);
    connect(page, &SettingsPage::heightChanged, this, &SettingsWindow::fitToSection,
            Qt::QueuedConnection);

    QAction* action = toolbar_->addAction(symbolIcon(QString::fromLatin1(icon)), title);
    action->setCheckable(true);
    actions_->addAction(action);
    const QString name = QString::fromLatin1(identifier);
    connect(action, &QAction::triggered, this, [this, name] { selectSection(name); });
    auto* button = qobject_cast<QToolButton*>(toolbar_->widgetForAction(action));
    button->setFocusPolicy(Qt::TabFocus);
    button->setMinimumWidth(68);
    sections_.push_back({name, action, area, page});
}

/// The sections one after another, not each before its page.
void SettingsWindow::orderFocus() {
    for (std::size_t index = 1; index < sections_.size(); ++index) {
        setTabOrder(toolbar_->widgetForAction(sections_[index - 1].action),
                    toolbar_->widgetForAction(sections_[index].action));
    }
}

void SettingsWindow::makeShortcuts() {
    const auto add = [this](const QKeySequence& keys, auto&& act) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, act);
    };
    add(QKeySequence(Qt::CTRL | Qt::Key_PageDown), [this] { step(1); });
    add(QKeySequence(Qt::CTRL | Qt::Key_PageUp), [this] { step(-1); });
    add(QKeySequence(QKeySequence::Close), [this] { close(); });
}

QStringList SettingsWindow::toolbarSections() const {
    const QStringList chosen =
        context_.defaults.stringArrayForKey(settings::preferencesToolbar.name());
    if (!chosen.isEmpty()) {
        return chosen;
    }
    QStringList usual;
    for (const Section& section : sections_) {
        usual.append(section.identifier);
    }
    usual.removeOne(experimentalSection);
    return usual;
}

void SettingsWindow::updateToolbar() {
    const QStringList shown = toolbarSections();
    for (const Section& section : sections_) {
        section.action->setVisible(shown.contains(section.identifier) ||
                                   section.action->isChecked());
    }
}

void SettingsWindow::showToolbarMenu(const QPoint& position) {
    QMenu menu(this);
    QStringList shown = toolbarSections();
    for (const Section& section : sections_) {
        QAction* item = menu.addAction(section.action->text());
        item->setCheckable(true);
        item->setChecked(shown.contains(section.identifier));
        item->setData(section.identifier);
    }
    if (const QAction* chosen = menu.exec(toolbar_->mapToGlobal(position))) {
        const QString identifier = chosen->data().toString();
        if (!shown.removeOne(identifier)) {
            shown.append(identifier);
        }
        context_.defaults.set(settings::preferencesToolbar, shown);
    }
}

const SettingsWindow::Section& SettingsWindow::current() const {
    return sections_.at(static_cast<std::size_t>(pages_->currentIndex()));
}

QString SettingsWindow::currentSection() const {
    return current().identifier;
}

void SettingsWindow::selectSection(const QString& identifier) {
    auto section = std::find_if(sections_.begin(), sections_.end(), [&](const Section& candidate) {
        return candidate.identifier == identifier;
    });
    if (section == sections_.end()) {
        section = sections_.begin();
    }
    section->action->setChecked(true);
    pages_->setCurrentWidget(section->area);
    updateToolbar();
    fitToSection();
}

void SettingsWindow::step(int direction) {
    QList<QAction*> shown = actions_->actions();
    shown.removeIf([](const QAction* action) { return !action->isVisible(); });
    const qsizetype next = shown.indexOf(current().action) + direction;
    if (next >= 0 && next < shown.size()) {
        shown[next]->trigger();
    }
}

void SettingsWindow::fitToSection() {
    int width = std::max(narrowestPage, toolbar_->sizeHint().width());
    for (const Section& section : sections_) {
        width = std::max(width, section.page->minimumSizeHint().width());
    }
    const int room =
        screen()->availableGeometry().height() - screenMargin -
        static_cast<int>(context_.defaults.get(settings::visibleFrameExtraDockSpacing));
    const SettingsPage& page = *current().page;
    const int wanted = page.heightForPageWidth(width) + toolbar_->sizeHint().height();
    const bool fits = wanted <= room;
    // A bar that came while the section was larger would make it narrow, and so stay for ever.
    current().area->setVerticalScrollBarPolicy(fits ? Qt::ScrollBarAlwaysOff
                                                    : Qt::ScrollBarAsNeeded);
    setMinimumSize(width, fits ? wanted : lowestWindow);
    setMaximumHeight(page.canGrow() ? QWIDGETSIZE_MAX : wanted);
    resize(width, std::min(wanted, room));
    if (isVisible()) {
        keepOnTheScreen();
    }
}

/// A section that is higher than the one before may reach below the screen.
void SettingsWindow::keepOnTheScreen() {
    const QRect frame(pos(), size() + (frameGeometry().size() - geometry().size()));
    const QPoint place = frameOnScreens(frame, {screen()->availableGeometry()}).topLeft();
    if (place != pos()) {
        move(place);
    }
}

void SettingsWindow::standOnTheScreenInUse() {
    if (const QWidget* active = QApplication::activeWindow()) {
        setScreen(active->screen());
    }
}

/// As far as the window is concerned: its frame is not known before it shows.
void SettingsWindow::centre() {
    QRect frame({}, size());
    frame.moveCenter(screen()->availableGeometry().center());
    move(frame.topLeft());
}

void SettingsWindow::showPreferencesSection(const QString& identifier) {
    const bool comesUp = !isVisible();
    if (comesUp) {
        standOnTheScreenInUse();
    }
    selectSection(identifier);
    if (comesUp) {
        centre();
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void SettingsWindow::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel)) {
        close();
    } else {
        QMainWindow::keyPressEvent(event);
    }
}

void SettingsWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        fitToSection();
    }
}

}  // namespace ui
