#pragma once

#include <QStringList>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "app/front_end.h"
#include "app/rows/vanishing.h"

namespace support {

/// A front end without a screen: remembers what it was asked to do and answers as told.
class MemoryFrontEnd final : public app::Questions,
                             public app::Feedback,
                             public app::Presence,
                             public app::DownloadListView,
                             public app::Clipboard {
public:
    [[nodiscard]] app::FrontEnd frontEnd() { return {*this, *this, *this, *this, this}; }

    // Answers. An alert that nobody answers is declined, a prompt cancelled.

    std::function<bool(const app::Alert&)> onConfirm = [](const app::Alert&) { return false; };
    std::deque<std::optional<QString>> files, folders, unlocked;
    bool isModal = false, holdsModifiers = false, isVisible = false, isActive = false,
         isHiddenNow = false;
    bool springs = false;
    bool showsStatusItems = true;
    /// Somebody who can be asked.
    bool isThere = true;
    std::shared_ptr<app::VanishView> vanishing;

    // What happened.

    std::vector<app::Alert> alerts;
    int dismissed = 0, beeps = 0, attentions = 0, reloads = 0, faded = 0;
    QStringList sounds;
    /// Each folder with the explanation.
    QStringList askedToUnlock;
    /// The window's moves: "show", "activate", "back", "hide", "unhide", "unhide and activate",
    /// "task bar", "no task bar", "settings: SECTION".
    QStringList moves;
    QList<qsizetype> selectedRows;
    std::vector<platform::Seconds> delayedRedraws;
    app::Pasteboard copied;
    int redraws = 0;  ///< Of the whole list.

    bool confirm(const app::Alert& alert) override {
        alerts.push_back(alert);
        return isThere && onConfirm(alert);
    }
    bool canAsk() const override { return isThere; }
    void dismissAlert() override { ++dismissed; }
    std::optional<QString> chooseAbbreviatedDownloadFileForURL(const platform::Url&) override {
        return taken(files);
    }
    std::optional<QString> chooseAbbreviatedDownloadsFolder() override {
        if (whileAsked)
            whileAsked();
        return taken(folders);
    }

    std::optional<QString> unlockFolder(const QString& folder,
                                        const QString& explanation) override {
        askedToUnlock.append(folder + QStringLiteral(": ") + explanation);
        return taken(unlocked);
    }

    void beep() override { ++beeps; }
    void requestUserAttention() override { ++attentions; }
    void playSound(const QString& name) override { sounds.append(name); }

    bool isShowingModalWindow() const override { return isModal; }
    bool areAlternateFunctionalityModifiersHeld() const override { return holdsModifiers; }
    bool isDownloadWindowActive() const override { return isActive; }
    bool isDownloadWindowVisible() const override { return isVisible; }
    void showDownloadWindow(bool activating) override {
        isVisible = true;
        moves.append(activating ? QStringLiteral("activate") : QStringLiteral("show"));
    }
    void orderDownloadWindowBack() override { moves.append(QStringLiteral("back")); }
    bool canShowStatusItem() const override { return showsStatusItems; }
    void setShownInTaskBar(bool shown) override {
        moves.append(shown ? QStringLiteral("task bar") : QStringLiteral("no task bar"));
    }
    void showPreferencesSection(const QString& section) override {
        moves.append(QStringLiteral("settings: ") + section);
    }
    bool isHidden() const override { return isHiddenNow; }
    void hide() override {
        isHiddenNow = true;
        moves.append(QStringLiteral("hide"));
    }
    void unhide(bool activating) override {
        isHiddenNow = false;
        moves.append(activating ? QStringLiteral("unhide and activate") : QStringLiteral("unhide"));
    }
    bool springOpenDownloadWindow(const std::function<void()>& updateList) override {
        if (springs) {
            moves.append(QStringLiteral("spring"));
            updateList();
        }
        return springs;
    }
    void fadeDownloadWindow() override { ++faded; }

    void reloadRows(const QList<qsizetype>& rows) override {
        ++reloads;
        selectedRows = rows;
    }
    void selectRows(const QList<qsizetype>& rows) override { selectedRows = rows; }
    void setNeedsDisplay() override { ++redraws; }
    void setNeedsDisplayAfterDelay(platform::Seconds delay) override {
        delayedRedraws.push_back(delay);
    }
    void displayNow() override {}
    std::shared_ptr<app::VanishView> vanishView() override { return vanishing; }

    void copy(const app::Pasteboard& pasteboard) override { copied = pasteboard; }

    /// What goes on while the user chooses a folder.
    std::function<void()> whileAsked;

private:
    static std::optional<QString> taken(std::deque<std::optional<QString>>& answers) {
        if (answers.empty()) {
            return {};
        }
        const std::optional<QString> answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

}  // namespace support
