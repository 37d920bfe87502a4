#pragma once

#include <QList>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "app/intake/pasteboard.h"
#include "platform/base/clock.h"
#include "platform/net/url.h"

namespace platform {
class UserNotificationCenter;
}

/// What the core asks of whatever shows it: a window, a terminal, or memory in a test. All of it
/// is called on the main thread.
namespace app {

class VanishView;

/// A decision for a person, with the texts to show (English; to be translated by the front end).
struct Alert {
    enum class Kind {
        QuitWhileDownloading,
        ManyFiles,
        CancelDownloads,
        ShutDownWhenDone,
        LinkedFiles,
        TextDocument,
        RemoveAllRules,
        ApplicationMode,
        MissingVolumes,
        Renewal,
        UnlockFolder,
        QueueNotSaved,
        UnfamiliarTarget,
        LargeSeries,
        OpenMany,
        FilesGone,
    };
    Kind kind;
    QString title, text;
    QString defaultButton, otherButton;
    /// Nobody presses the default button by a hasty Return.
    bool isRisky = false;
};

/// What only a person can decide. Asking is modal: an operation returns with the answer, and the
/// main loop may go on meanwhile, so that the queue can be another one afterwards.
class Questions {
public:
    virtual ~Questions() = default;

    /// True: the default button.
    virtual bool confirm(const Alert& alert) = 0;
    /// Whether somebody is there to answer; without, each answer is false.
    [[nodiscard]] virtual bool canAsk() const { return true; }
    /// Without, a series that is too long is refused and the setting named that allows it.
    [[nodiscard]] virtual bool asksAboutSeries() const { return true; }
    /// The reason for the alert on screen is gone: takes it away, its answer being false.
    virtual void dismissAlert() = 0;

    /// Title "Choose File Location". A suggested name and its extension come from `url`. The path
    /// with its home abbreviated to a tilde; nothing: cancelled.
    virtual std::optional<QString> chooseAbbreviatedDownloadFileForURL(
        const platform::Url& url) = 0;
    /// Title and prompt "Choose Folder". As above.
    virtual std::optional<QString> chooseAbbreviatedDownloadsFolder() = 0;
    /// Title and prompt "Unlock": the user shows a sandboxed program the folder that it may not
    /// reach by itself; `explanation`, if there is one, is shown with it. The chosen path as it
    /// stands; nothing: cancelled, or nobody is there.
    virtual std::optional<QString> unlockFolder(const QString& folder, const QString& explanation) {
        static_cast<void>(folder);
        static_cast<void>(explanation);
        return std::nullopt;
    }
};

class Feedback {
public:
    virtual ~Feedback() = default;

    virtual void beep() = 0;
    /// Marks the program as wanting to be looked at, without taking the focus.
    virtual void requestUserAttention() = 0;
    /// By resource name, such as "DQHeartbeat".
    virtual void playSound(const QString& name) = 0;
};

/// The program as it stands on the desktop. A front end without windows answers as one whose
/// window is never visible.
class Presence {
public:
    virtual ~Presence() = default;

    /// Downloads are not started while one is up.
    [[nodiscard]] virtual bool isShowingModalWindow() const = 0;
    [[nodiscard]] virtual bool areAlternateFunctionalityModifiersHeld() const = 0;

    [[nodiscard]] virtual bool isDownloadWindowVisible() const = 0;
    /// That one, or another one that the user may be looking at.
    [[nodiscard]] virtual bool isAnyWindowVisible() const { return isDownloadWindowVisible(); }
    /// The user works in it and sees what happens.
    [[nodiscard]] virtual bool isDownloadWindowActive() const { return false; }
    /// Brings the window to the front, with the focus if `activating`.
    virtual void showDownloadWindow(bool activating) = 0;
    /// Puts the window behind all others.
    virtual void orderDownloadWindowBack() = 0;

    /// Whether the desktop would show a status item now.
    [[nodiscard]] virtual bool canShowStatusItem() const { return false; }
    /// Whether something of the program is on the screen beside its windows: the drop target.
    [[nodiscard]] virtual bool isOnScreenWithoutWindow() const { return false; }
    /// Whether the window has an entry in the desktop's task bar, now and whenever it comes up.
    virtual void setShownInTaskBar(bool shown) { static_cast<void>(shown); }
    /// Activates the program and shows its settings at a section, by name.
    virtual void showPreferencesSection(const QString& section) { static_cast<void>(section); }

    [[nodiscard]] virtual bool isHidden() const = 0;
    virtual void hide() = 0;
    virtual void unhide(bool activating) = 0;

    /// Before the first rows come: shrinks the window, calls `updateList` and lets it spring open.
    /// False: nothing was done and `updateList` not called.
    virtual bool springOpenDownloadWindow(const std::function<void()>& updateList) = 0;
    /// Before the end: shrinks and fades the window, keeping its saved frame.
    virtual void fadeDownloadWindow() = 0;
};

/// The list. Its rows are those of `DQMainController::sortedAndFilteredDownloads`.
class DownloadListView {
public:
    virtual ~DownloadListView() = default;

    /// Rows came, went or moved: reads all anew and selects exactly `selectedRows`. The selection
    /// is not reported back.
    virtual void reloadRows(const QList<qsizetype>& selectedRows) = 0;
    /// Selects exactly these. Not reported back.
    virtual void selectRows(const QList<qsizetype>& rows) = 0;

    virtual void setNeedsDisplay() = 0;
    /// Redraws once after the delay, however often it is asked for until then.
    virtual void setNeedsDisplayAfterDelay(platform::Seconds delay) = 0;
    /// Redraws what needs it before returning.
    virtual void displayNow() = 0;

    /// Where rows fade and collapse before their downloads leave the queue. Null: they go at once.
    [[nodiscard]] virtual std::shared_ptr<VanishView> vanishView() = 0;
};

/// Where copied addresses and texts go.
class Clipboard {
public:
    virtual ~Clipboard() = default;

    virtual void copy(const Pasteboard& pasteboard) = 0;
};

class AuthenticationPrompt;

/// One front end. What it refers to outlives the core.
struct FrontEnd {
    Questions& questions;
    Feedback& feedback;
    Presence& presence;
    DownloadListView& list;
    /// Null: nothing can be copied.
    Clipboard* clipboard = nullptr;
    /// Null: nobody can be asked for passwords.
    AuthenticationPrompt* authentication = nullptr;
    /// Null: no notifications are sent.
    platform::UserNotificationCenter* notifications = nullptr;
};

}  // namespace app
