#pragma once

#include <functional>

#include "app/front_end.h"

namespace app::terminal {

/// Neither rings nor blinks: a terminal says what happened in words.
class TerminalFeedback final : public Feedback {
public:
    void beep() override {}
    void requestUserAttention() override {}
    void playSound(const QString& name) override { static_cast<void>(name); }
};

/// A program without windows.
class TerminalPresence final : public Presence {
public:
    explicit TerminalPresence(std::function<bool()> isAsking) : isAsking_(std::move(isAsking)) {}

    [[nodiscard]] bool isShowingModalWindow() const override { return isAsking_(); }
    [[nodiscard]] bool areAlternateFunctionalityModifiersHeld() const override { return false; }
    [[nodiscard]] bool isDownloadWindowVisible() const override { return false; }
    void showDownloadWindow(bool activating) override { static_cast<void>(activating); }
    void orderDownloadWindowBack() override {}
    [[nodiscard]] bool isHidden() const override { return false; }
    void hide() override {}
    void unhide(bool activating) override { static_cast<void>(activating); }
    bool springOpenDownloadWindow(const std::function<void()>& updateList) override {
        static_cast<void>(updateList);
        return false;
    }
    void fadeDownloadWindow() override {}

private:
    std::function<bool()> isAsking_;
};

/// A list whose rows are drawn when the session sees fit; `needsDisplay` tells it of changes.
class TerminalListView final : public DownloadListView {
public:
    explicit TerminalListView(std::function<void()> needsDisplay)
        : needsDisplay_(std::move(needsDisplay)) {}

    void reloadRows(const QList<qsizetype>& selectedRows) override {
        static_cast<void>(selectedRows);
        needsDisplay_();
    }
    void selectRows(const QList<qsizetype>& rows) override { static_cast<void>(rows); }
    void setNeedsDisplay() override { needsDisplay_(); }
    void setNeedsDisplayAfterDelay(platform::Seconds delay) override {
        static_cast<void>(delay);
        needsDisplay_();
    }
    void displayNow() override { needsDisplay_(); }
    [[nodiscard]] std::shared_ptr<VanishView> vanishView() override { return nullptr; }

private:
    std::function<void()> needsDisplay_;
};

}  // namespace app::terminal
