#pragma once

#include <QString>
#include <QtGlobal>
#include <optional>
#include <vector>

namespace app {

/// Everything that a menu, a key or the toolbar can set off.
enum class Command {
    // Taking addresses in.
    OpenURL,
    OpenFile,
    OpenFolder,
    OpenURLFromPasteboard,
    StopIntake,

    // Text and selection.
    Undo,  ///< Takes the last removal back.
    Copy,
    Paste,
    SelectAll,
    DeselectAll,
    Find,

    // The list.
    ChangeSorting,  ///< Tag: as for `DQMainController::changeSorting`.
    ToggleLocationKeyDisplayNames,
    TogglePrivateDownloading,
    ChangeProgressBarStyle,  ///< Tag: the style.
    ToggleDetails,
    ToggleDetailsBeside,

    // Downloads: those selected, or else all shown.
    TogglePause,
    QueuePaused,
    PauseQueued,
    PauseAll,
    Retry,
    CancelAll,  ///< Tag: 1 or above asks first.
    Remove,     ///< Those selected only.
    Clear,
    Verify,         ///< The one selected.
    ChangeAddress,  ///< Of the one selected.
    LimitSpeed,     ///< Of those selected that are not done.
    OpenInBrowser,  ///< The addresses of those selected.

    // The queue's order.
    Rearrange,  ///< Tag: as for `DQMainController::rearrange`.
    Move,       ///< Tag: one of `Movement`.

    // What goes by itself.
    ToggleAutoStart,
    ToggleAutoSleep,
    ToggleAutoShutDown,
    ToggleAcceleration,
    ToggleThrottle,
    ToggleScheduledQueuing,
    ToggleScheduledPausing,

    // Windows and program.
    ShowDownloadWindow,
    CloseWindow,
    Minimize,
    FullScreen,
    CustomizeToolbar,
    ShowPreferences,
    ToggleDebugLogging,  ///< Shows the log where it can be shown.
    ReportProblem,
    ShowAbout,
    CheckForUpdates,
    ShowNews,
    ShowHelp,
    SearchHelp,
    Quit,
};

/// Where the selected rows go.
enum Movement : qint64 { MoveUp, MoveDown, MoveToTop, MoveToBottom };

/// What holds of a command at all times.
struct CommandDescription {
    Command command;
    qint64 tag;
    /// Names it in the program: the operation, as in "pauseAll".
    const char* identifier;
    /// English, to be translated; `&` stands before the mnemonic.
    const char* title;
    /// As in "Ctrl+N"; empty: none. Several are separated by "; ".
    const char* shortcut;
};

/// With the tag given, or else whatever tag the command is listed with first.
[[nodiscard]] const CommandDescription& commandDescription(Command command, qint64 tag = 0);
/// Its tags in the order in which they are offered, in groups with separators between them.
[[nodiscard]] std::vector<std::vector<qint64>> commandTags(Command command);
/// In the user's language, with its mnemonic.
[[nodiscard]] QString commandTitle(Command command, qint64 tag = 0);

/// How a command is shown at this moment.
struct CommandState {
    bool isEnabled = true;
    /// Nothing: it has no mark.
    std::optional<bool> isChecked;
    /// In place of the title it has otherwise; empty: that one.
    QString title;
};

}  // namespace app
