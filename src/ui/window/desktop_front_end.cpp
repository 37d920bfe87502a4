#include "ui/window/desktop_front_end.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTextDocument>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "app/main_controller.h"
#include "links/names/file_names.h"
#include "links/names/safe_file_name.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"
#include "ui/art/icons.h"
#include "ui/list/download_list.h"
#include "ui/list/vanishing_rows.h"
#include "ui/rules/folder_selector.h"
#include "ui/status/status_items.h"
#include "ui/text.h"
#include "ui/window/main_window.h"
#include "ui/window/task_bar_entry.h"
#include "ui/window/window_frame.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

namespace {

/// The largest in which the icon is kept; desktops scale it down.
constexpr int iconSize = 256;

QImage iconImage(const QString& name) {
    return colouredPixmap(name, iconSize, 1.0).toImage();
}

/// With names in it that may look like markup.
QString literalText(const QString& text) {
    return Qt::mightBeRichText(text) ? text.toHtmlEscaped().replace(u'\n', u"<br>"_s) : text;
}

/// The attribute counts for windows that are still to be made, and Qt's plug-in for X11 looks at
/// the property each time.
void letShowActivate(QWidget& window, bool activates) {
    window.setAttribute(Qt::WA_ShowWithoutActivating, !activates);
    if (QWindow* handle = window.windowHandle()) {
        handle->setProperty("_q_showWithoutActivating", !activates);
    }
}

/// Goes when it is closed.
QMessageBox* makeProblemBox(const QString& problem, QWidget* parent) {
    auto* const box = new QMessageBox(QMessageBox::Warning, QStringLiteral("Orlop"), problem,
                                      QMessageBox::Ok, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    // A path may look like markup.
    box->setTextFormat(Qt::PlainText);
    return box;
}

}  // namespace

DesktopFrontEnd::DesktopFrontEnd()
    : icon_(iconImage(QStringLiteral("orlop")), iconImage(QStringLiteral("DQOrlopFlatOff"))),
      notifications_(platform::makeUserNotificationCenter(translated("Open"))) {}

DesktopFrontEnd::~DesktopFrontEnd() = default;

void DesktopFrontEnd::setPreferences(std::function<void(const QString&)> show) {
    showPreferences_ = std::move(show);
}

void DesktopFrontEnd::setWindow(MainWindow* window, app::DQMainController* controller) {
    window_ = window;
    taskBarEntry_ = window == nullptr ? nullptr : std::make_unique<TaskBarEntry>(*window);
    controller_ = controller;
}

void DesktopFrontEnd::tellProblem(const QString& problem) {
    makeProblemBox(problem, window_)->exec();
}

void DesktopFrontEnd::noteProblem(const QString& problem) {
    QMessageBox* const box = makeProblemBox(problem, window_);
    box->setModal(false);
    box->show();
}

void DesktopFrontEnd::stopAsking() {
    asks_ = false;
    dismissAlert();
}

bool DesktopFrontEnd::canAsk() const {
    return asks_ && window_;
}

bool DesktopFrontEnd::confirm(const app::Alert& alert) {
    if (!canAsk()) {
        return !asks_ && alert.kind == app::Alert::Kind::QuitWhileDownloading;
    }
    QMessageBox box(QMessageBox::Question, QStringLiteral("Orlop"),
                    alertTitle(translated(alert.title)), QMessageBox::NoButton,
                    window_->isVisible() ? window_.data() : nullptr);
    box.setInformativeText(literalText(translated(alert.text)));
    QPushButton* accept = box.addButton(translated(alert.defaultButton), QMessageBox::AcceptRole);
    QPushButton* first = accept;
    if (!alert.otherButton.isEmpty()) {
        QPushButton* other = box.addButton(translated(alert.otherButton), QMessageBox::RejectRole);
        box.setEscapeButton(other);
        first = alert.isRisky ? other : accept;
    }
    box.setDefaultButton(first);
    alert_ = &box;
    box.exec();
    return box.clickedButton() == accept;
}

void DesktopFrontEnd::dismissAlert() {
    if (alert_) {
        alert_->reject();
    }
}

std::optional<QString> DesktopFrontEnd::chooseAbbreviatedDownloadFileForURL(
    const platform::Url& url) {
    if (!canAsk()) {
        return std::nullopt;
    }
    const QString name = links::safeFileName(
        links::filename(url, links::plusSignsInNames(platform::standardDefaults())));
    const QString extension = QFileInfo(name).suffix();
    const QString path = QFileDialog::getSaveFileName(
        window_, translated("Choose File Location"), platform::downloadsUserFolder() + u'/' + name,
        extension.isEmpty() ? QString() : QStringLiteral("*.") + extension);
    return path.isEmpty() ? std::nullopt : std::optional(platform::abbreviateWithTilde(path));
}

std::optional<QString> DesktopFrontEnd::chooseAbbreviatedDownloadsFolder() {
    if (!canAsk()) {
        return std::nullopt;
    }
    const QString path = chooseFolder(window_, platform::downloadsUserFolder());
    return path.isEmpty() ? std::nullopt : std::optional(path);
}

/// The portal's panel has no room for an explanation, so that stands before it.
std::optional<QString> DesktopFrontEnd::unlockFolder(const QString& folder,
                                                     const QString& explanation) {
    if (!canAsk()) {
        return std::nullopt;
    }
    if (!explanation.isEmpty() &&
        !confirm({app::Alert::Kind::UnlockFolder, platform::abbreviateWithTilde(folder),
                  explanation, u"Unlock"_s, u"Cancel"_s})) {
        return std::nullopt;
    }
    QFileDialog panel(window_, translated("Unlock"), folder);
    panel.setFileMode(QFileDialog::Directory);
    panel.setOption(QFileDialog::ShowDirsOnly);
    panel.setOption(QFileDialog::ReadOnly);
    panel.setLabelText(QFileDialog::Accept, translated("Unlock"));
    if (panel.exec() != QDialog::Accepted || panel.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return panel.selectedFiles().constFirst();
}

void DesktopFrontEnd::beep() {
    QApplication::beep();
}

void DesktopFrontEnd::requestUserAttention() {
    icon_.requestAttention();
    if (window_) {
        QApplication::alert(window_);
    }
}

void DesktopFrontEnd::playSound(const QString& name) {
    if (!sounds_.play(name)) {
        QApplication::beep();
    }
}

bool DesktopFrontEnd::isShowingModalWindow() const {
    return QApplication::activeModalWidget() != nullptr;
}

bool DesktopFrontEnd::areAlternateFunctionalityModifiersHeld() const {
    return (QApplication::queryKeyboardModifiers() & (Qt::ShiftModifier | Qt::AltModifier)) != 0;
}

bool DesktopFrontEnd::isAnyWindowVisible() const {
    const QWidgetList widgets = QApplication::topLevelWidgets();
    return std::any_of(widgets.begin(), widgets.end(),
                       [](const QWidget* widget) { return widget->isVisible(); });
}

bool DesktopFrontEnd::isDownloadWindowVisible() const {
    return window_ && window_->isVisible() && !window_->isMinimized();
}

bool DesktopFrontEnd::isDownloadWindowActive() const {
    return isDownloadWindowVisible() && window_->isActiveWindow();
}

void DesktopFrontEnd::showDownloadWindow(bool activating) {
    if (!window_) {
        return;
    }
    if (window_->frame().isFading()) {
        window_->frame().stopAnimation();
    }
    letShowActivate(*window_, activating);
    window_->setWindowState(window_->windowState() & ~Qt::WindowMinimized);
    window_->show();
    window_->raise();
    if (activating) {
        window_->activateWindow();
    }
}

void DesktopFrontEnd::orderDownloadWindowBack() {
    if (window_) {
        isSteppingBack_ = true;
        window_->lower();
    }
}

bool DesktopFrontEnd::canShowStatusItem() const {
    return statusItems_ && statusItems_->canShowItem();
}

bool DesktopFrontEnd::isOnScreenWithoutWindow() const {
    return statusItems_ && statusItems_->isDropTargetShown();
}

void DesktopFrontEnd::setShownInTaskBar(bool shown) {
    if (taskBarEntry_) {
        taskBarEntry_->setShown(shown);
    }
}

void DesktopFrontEnd::showPreferencesSection(const QString& section) {
    if (showPreferences_) {
        showPreferences_(section);
    }
}

bool DesktopFrontEnd::isHidden() const {
    return !isDownloadWindowVisible();
}

void DesktopFrontEnd::hide() {
    if (window_) {
        // A window that is just springing open would come back.
        window_->frame().stopAnimation();
        // Window managers give the focus to what comes back from its icon, and none to what is
        // mapped without wanting it.
        if (isSteppingBack_) {
            window_->hide();
        } else {
            window_->showMinimized();
        }
    }
}

void DesktopFrontEnd::unhide(bool activating) {
    if (window_ && std::exchange(isSteppingBack_, false) && !activating) {
        letShowActivate(*window_, false);
        window_->show();
        window_->lower();
        return;
    }
    showDownloadWindow(activating);
}

bool DesktopFrontEnd::springOpenDownloadWindow(const std::function<void()>& updateList) {
    return window_ && window_->frame().collapseAndSpringOpen(updateList);
}

void DesktopFrontEnd::fadeDownloadWindow() {
    if (!window_) {
        return;
    }
    if (asks_) {
        window_->frame().fadeOut();
    } else {
        window_->frame().save();
        window_->hide();
    }
}

void DesktopFrontEnd::afterFading(QObject& context, const std::function<void()>& then) {
    if (window_ && window_->frame().isFading()) {
        QObject::connect(&window_->frame(), &WindowFrame::fadedOut, &context, then);
    } else {
        then();
    }
}

void DesktopFrontEnd::reloadRows(const QList<qsizetype>& selectedRows) {
    if (window_) {
        window_->list().reloadRows(controller_->sortedAndFilteredDownloadsSnapshot(), selectedRows);
    }
}

void DesktopFrontEnd::selectRows(const QList<qsizetype>& rows) {
    if (window_) {
        window_->list().selectRows(rows);
    }
}

void DesktopFrontEnd::setNeedsDisplay() {
    if (window_) {
        window_->list().viewport()->update();
    }
}

void DesktopFrontEnd::setNeedsDisplayAfterDelay(platform::Seconds delay) {
    if (window_) {
        window_->list().setNeedsDisplayAfterDelay(delay);
    }
}

void DesktopFrontEnd::displayNow() {
    if (window_) {
        window_->list().viewport()->repaint();
    }
}

std::shared_ptr<app::VanishView> DesktopFrontEnd::vanishView() {
    return window_ ? window_->list().vanishingRows() : nullptr;
}

}  // namespace ui
