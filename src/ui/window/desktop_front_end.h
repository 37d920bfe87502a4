#pragma once

#include <QPointer>
#include <QWidget>

#include "app/front_end.h"
#include "desktop/icon/application_icon.h"
#include "desktop/sound_player.h"
#include "platform/session/notifications.h"
#include "ui/window/clipboard.h"

class QMessageBox;

namespace app {
class DQMainController;
}

namespace ui {

class MainWindow;
class StatusItems;
class TaskBarEntry;

/// The windows as the core sees them.
class DesktopFrontEnd final : public app::Questions,
                              public app::Feedback,
                              public app::Presence,
                              public app::DownloadListView {
public:
    DesktopFrontEnd();
    ~DesktopFrontEnd() override;

    [[nodiscard]] app::FrontEnd frontEnd() {
        return {*this, *this, *this, *this, &clipboard_, nullptr, notifications_.get()};
    }
    [[nodiscard]] desktop::ApplicationIcon& icon() { return icon_; }
    /// Until it is called there is nothing to show and questions get the safe answer.
    void setWindow(MainWindow* window, app::DQMainController* controller);
    /// What shows the settings at a section. Empty: they cannot be shown.
    void setPreferences(std::function<void(const QString& section)> show);
    /// Null: the desktop is not asked for status items.
    void setStatusItems(StatusItems* items) { statusItems_ = items; }
    /// Says what went wrong, in a dialog; returns when it was read.
    void tellProblem(const QString& problem);
    /// The same while everything else goes on.
    void noteProblem(const QString& problem);
    /// Calls `then` when the window is gone that may be about to go; unless `context` goes first.
    void afterFading(QObject& context, const std::function<void()>& then);
    /// The session is ending: from now on nobody is asked, which agrees to the end and to nothing
    /// else, and nothing is animated.
    void stopAsking();

    bool confirm(const app::Alert& alert) override;
    [[nodiscard]] bool canAsk() const override;
    void dismissAlert() override;
    std::optional<QString> chooseAbbreviatedDownloadFileForURL(const platform::Url& url) override;
    std::optional<QString> chooseAbbreviatedDownloadsFolder() override;
    std::optional<QString> unlockFolder(const QString& folder, const QString& explanation) override;

    void beep() override;
    void requestUserAttention() override;
    void playSound(const QString& name) override;

    [[nodiscard]] bool isShowingModalWindow() const override;
    [[nodiscard]] bool areAlternateFunctionalityModifiersHeld() const override;
    [[nodiscard]] bool isDownloadWindowVisible() const override;
    [[nodiscard]] bool isAnyWindowVisible() const override;
    [[nodiscard]] bool isDownloadWindowActive() const override;
    void showDownloadWindow(bool activating) override;
    void orderDownloadWindowBack() override;
    [[nodiscard]] bool canShowStatusItem() const override;
    [[nodiscard]] bool isOnScreenWithoutWindow() const override;
    void setShownInTaskBar(bool shown) override;
    void showPreferencesSection(const QString& section) override;
    [[nodiscard]] bool isHidden() const override;
    void hide() override;
    void unhide(bool activating) override;
    bool springOpenDownloadWindow(const std::function<void()>& updateList) override;
    void fadeDownloadWindow() override;

    void reloadRows(const QList<qsizetype>& selectedRows) override;
    void selectRows(const QList<qsizetype>& rows) override;
    void setNeedsDisplay() override;
    void setNeedsDisplayAfterDelay(platform::Seconds delay) override;
    void displayNow() override;
    [[nodiscard]] std::shared_ptr<app::VanishView> vanishView() override;

private:
    Clipboard clipboard_;
    desktop::ApplicationIcon icon_;
    desktop::SoundPlayer sounds_;
    std::unique_ptr<platform::UserNotificationCenter> notifications_;
    std::function<void(const QString&)> showPreferences_;
    QPointer<MainWindow> window_;
    std::unique_ptr<TaskBarEntry> taskBarEntry_;
    app::DQMainController* controller_ = nullptr;
    StatusItems* statusItems_ = nullptr;
    QPointer<QMessageBox> alert_;
    bool asks_ = true;
    bool isSteppingBack_ = false;  ///< Behind the other windows, without the focus.
};

}  // namespace ui
