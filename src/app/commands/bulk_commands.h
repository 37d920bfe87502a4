#pragma once

#include <optional>

#include "app/main_controller.h"

/// Operations on many downloads at once. Main thread.
namespace app {

class RowActions;
class Rows;

/// Starts those that are paused.
void queuePaused(engine::DownloadQueue& queue, const Downloads& downloads);
void pauseDownloads(engine::DownloadQueue& queue, const Downloads& downloads);
/// Pauses what is active, or else starts what is paused.
void togglePause(engine::DownloadQueue& queue, const Downloads& downloads);
/// Above ten the user is asked. False: he would rather not.
[[nodiscard]] bool mayOpenFiles(std::size_t count, Questions& questions);
/// Their files, each in its application, if they may be opened.
void open(const RowActions& actions, const Downloads& downloads, Questions& questions);
/// The same with their addresses, each in the browser.
void openOriginalURLs(Rows& rows, const Downloads& downloads, Questions& questions);
/// For good, with their partial files; what the user removes is withdrawn.
void remove(engine::DownloadQueue& queue, const Downloads& downloads);
/// The user can have them back.
void withdraw(engine::DownloadQueue& queue, const Downloads& downloads);
/// Withdraws them. False: none, or, where it must be confirmed, the user keeps them.
bool cancel(engine::DownloadQueue& queue, const Downloads& downloads, bool mustConfirm,
            Questions& questions);

void copyOriginalURLs(const Downloads& downloads, const FrontEnd& frontEnd);

/// The downloads of the selected rows one place on or to an end of the queue. The rows before
/// which they would land; nothing: they are there already, or rows cannot be moved.
[[nodiscard]] std::optional<qsizetype> rowForMovement(DQMainController& controller,
                                                      qint64 movement);

}  // namespace app
