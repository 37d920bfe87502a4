#include "app/commands/command.h"

#include <algorithm>
#include <iterator>

#include "links/text/localization.h"

namespace app {
namespace {

using links::translatable;

/// A line without a title separates those above it from those below.
constexpr CommandDescription descriptions[] = {
    {Command::OpenURL, 0, "openURL", translatable("&Add Addresses..."), "Ctrl+N"},
    {Command::OpenFile, 0, "openFile", translatable("&Open..."), "Ctrl+O"},
    {Command::OpenFolder, 0, "openFolder", translatable("Open Fol&der..."), "Ctrl+Shift+O"},
    {Command::OpenURLFromPasteboard, 0, "openURLFromPasteboard",
     translatable("Add &from Clipboard"), ""},
    {Command::StopIntake, 0, "stopIntake", translatable("S&top Adding"), ""},

    {Command::Undo, 0, "undo", translatable("&Undo"), "Ctrl+Z"},
    {Command::Copy, 0, "copy", translatable("&Copy URLs"), "Ctrl+C"},
    // With Shift it asks for the folder.
    {Command::Paste, 0, "paste", translatable("&Paste"), "Ctrl+V; Ctrl+Shift+V"},
    {Command::SelectAll, 0, "selectAll", translatable("Select &All"), "Ctrl+A"},
    {Command::DeselectAll, 0, "deselectAll", translatable("D&eselect All"), "Ctrl+Shift+A"},
    {Command::Find, 1, "performTextFinderAction", translatable("&Filter"), "Ctrl+F"},

    {Command::ChangeSorting, 0, "changeSorting", translatable("&Queue Order"), "Ctrl+1"},
    {Command::ChangeSorting, 1, "changeSorting", translatable("&Name"), "Ctrl+2"},
    {Command::ChangeSorting, 2, "changeSorting", translatable("&Progress"), "Ctrl+3"},
    {Command::ChangeSorting, 3, "changeSorting", translatable("&Host"), "Ctrl+4"},
    {Command::ChangeSorting, 4, "changeSorting", translatable("&Address"), "Ctrl+5"},
    {Command::ChangeSorting, -1, "", "", ""},
    {Command::ChangeSorting, -1, "changeSorting", translatable("A&scending"), ""},
    {Command::ChangeSorting, -2, "changeSorting", translatable("&Descending"), ""},
    {Command::ToggleLocationKeyDisplayNames, 0, "toggleLocationKeyDisplayNames",
     translatable("Show &Addresses"), "Ctrl+L"},
    {Command::TogglePrivateDownloading, 0, "togglePrivateDownloading",
     translatable("&Private Downloading"), "Ctrl+Shift+P"},
    {Command::ChangeProgressBarStyle, 0, "changeProgressBarStyle",
     translatable("&Lively Background"), ""},
    {Command::ChangeProgressBarStyle, 1, "changeProgressBarStyle",
     translatable("&Subtle Background"), ""},
    {Command::ChangeProgressBarStyle, -1, "", "", ""},
    {Command::ChangeProgressBarStyle, 2, "changeProgressBarStyle", translatable("&Pill"), ""},
    {Command::ChangeProgressBarStyle, 3, "changeProgressBarStyle", translatable("&Divider Line"),
     ""},

    {Command::ToggleDetails, 0, "toggleDetails", translatable("D&etails"), "Ctrl+I"},
    {Command::ToggleDetailsBeside, 0, "toggleDetailsBeside",
     translatable("Details Besi&de the List"), ""},

    {Command::TogglePause, 0, "togglePause", translatable("S&tart/Pause"), "Ctrl+Space"},
    {Command::QueuePaused, 0, "queuePaused", translatable("&Start Paused"), "Ctrl+R"},
    {Command::PauseQueued, 0, "pauseQueued", translatable("Pause &Waiting"), ""},
    {Command::PauseAll, 0, "pauseAll", translatable("&Pause"), "Ctrl+P"},
    {Command::Retry, 0, "retry", translatable("Retr&y"), "Ctrl+Shift+R"},
    {Command::CancelAll, 1, "cancelAll", translatable("&Cancel..."), "Ctrl+Del"},
    {Command::Remove, 0, "remove", translatable("&Remove"), "Del"},
    {Command::Clear, 0, "clear", translatable("C&lear"), "Ctrl+K"},
    {Command::Verify, 0, "verify", translatable("&Verify..."), ""},
    {Command::ChangeAddress, 0, "changeAddress", translatable("Change Address..."), ""},
    {Command::LimitSpeed, 0, "limitSpeed", translatable("Speed Limit..."), ""},
    {Command::OpenInBrowser, 0, "openInBrowser", translatable("Open in Browser"), ""},

    {Command::Rearrange, 0, "rearrange", translatable("&Date Added"), ""},
    {Command::Rearrange, 1, "rearrange", translatable("&Name"), ""},
    {Command::Rearrange, 2, "rearrange", translatable("&Progress"), ""},
    {Command::Rearrange, 3, "rearrange", translatable("&Host"), ""},
    {Command::Rearrange, 4, "rearrange", translatable("&Address"), ""},
    {Command::Rearrange, -1, "", "", ""},
    {Command::Rearrange, -1, "rearrange", translatable("&Reverse Order"), ""},
    {Command::Rearrange, -2, "rearrange", translatable("Rando&m Order"), ""},
    {Command::Move, MoveUp, "moveUp", translatable("Move &Up"), "Alt+Up"},
    {Command::Move, MoveDown, "moveDown", translatable("Move Do&wn"), "Alt+Down"},
    {Command::Move, MoveToTop, "moveToTop", translatable("Move to &Top"), "Alt+Home"},
    {Command::Move, MoveToBottom, "moveToBottom", translatable("Move to &Bottom"), "Alt+End"},

    {Command::ToggleAutoStart, 0, "toggleAutoStart", translatable("Start Downloads &Automatically"),
     ""},
    {Command::ToggleAutoSleep, 0, "toggleAutoSleep", translatable("Sle&ep When Done"), ""},
    {Command::ToggleAutoShutDown, 0, "toggleAutoShutDown", translatable("Shut &Down When Done..."),
     ""},
    {Command::ToggleAcceleration, 0, "toggleAcceleration", translatable("Accelerate Downl&oads"),
     ""},
    {Command::ToggleThrottle, 0, "toggleThrottle", translatable("Throttle &Bandwidth"), ""},
    {Command::ToggleScheduledQueuing, 0, "toggleScheduledQueuing",
     translatable("Start According to Schedule"), ""},
    {Command::ToggleScheduledPausing, 0, "toggleScheduledPausing",
     translatable("Pause According to Schedule"), ""},

    {Command::ShowDownloadWindow, 0, "showDownloadWindow", translatable("&Downloads"), "Ctrl+D"},
    {Command::CloseWindow, 0, "performClose", translatable("&Close Window"), "Ctrl+W"},
    {Command::Minimize, 0, "performMiniaturize", translatable("&Minimize"), "Ctrl+M"},
    {Command::FullScreen, 0, "toggleFullScreen", translatable("&Full Screen"), "F11"},
    {Command::CustomizeToolbar, 0, "runToolbarCustomizationPalette",
     translatable("Customize &Toolbar..."), ""},
    {Command::ShowPreferences, 0, "showPreferences", translatable("&Settings..."), "Ctrl+,"},
    {Command::ToggleDebugLogging, 0, "toggleDebugLogging", translatable("Enable Debug &Logging"),
     ""},
    {Command::ReportProblem, 0, "reportProblem", translatable("&Report a Problem..."), ""},
    {Command::ShowAbout, 0, "showAbout", translatable("&About Orlop"), ""},
    {Command::CheckForUpdates, 0, "checkForUpdates", translatable("Check for &Updates..."), ""},
    {Command::ShowNews, 0, "showNews", translatable("Orlop &News..."), ""},
    {Command::ShowHelp, 0, "help", translatable("&Help"), "F1"},
    {Command::SearchHelp, 0, "searchHelp", translatable("&Search the Manual..."), "Shift+F1"},
    {Command::Quit, 0, "terminate", translatable("&Quit"), "Ctrl+Q"},
};

}  // namespace

const CommandDescription& commandDescription(Command command, qint64 tag) {
    const auto is = [&](bool anyTag) {
        return std::find_if(std::begin(descriptions), std::end(descriptions), [&](const auto& one) {
            return one.command == command && *one.title != '\0' && (anyTag || one.tag == tag);
        });
    };
    const auto exact = is(false);
    return exact != std::end(descriptions) ? *exact : *is(true);
}

std::vector<std::vector<qint64>> commandTags(Command command) {
    std::vector<std::vector<qint64>> groups(1);
    for (const CommandDescription& description : descriptions) {
        if (description.command != command) {
            continue;
        }
        if (*description.title == '\0') {
            groups.emplace_back();
        } else {
            groups.back().push_back(description.tag);
        }
    }
    return groups;
}

QString commandTitle(Command command, qint64 tag) {
    return links::localized(commandDescription(command, tag).title);
}

}  // namespace app
