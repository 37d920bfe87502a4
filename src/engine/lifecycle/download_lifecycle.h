#pragma once

#include "platform/base/error.h"

namespace engine {

class DQDownload;
class DQDownloadWorkerPrototype;

/// The steps of a download from one status to the next, but for its start and its finish.

void queueDownload(DQDownload& download);
void pauseDownload(DQDownload& download);
void togglePauseOfDownload(DQDownload& download);
void removeDownload(DQDownload& download, bool moveToTrashIfDone);

/// A transfer ended in failure: the download is interrupted, or if it was a resume that got no byte
/// from the server, begins anew. One of several that has not begun yet is tried again later.
void handleFailure(DQDownload& download, DQDownloadWorkerPrototype& worker,
                   const platform::Error& error);

/// Pauses it with the reason for its rows, and arranges for its resumption as the settings say.
void interruptDownload(DQDownload& download, const platform::Error& error);

/// It could not be started at all.
void abortDownload(DQDownload& download);

/// Gives up all partial data and queues the download.
void startOverAfterFailedResume(DQDownload& download);

/// Stops all workers and resumes with one, from what the first worker has.
void goOnAlone(DQDownload& download);

/// After a change of status to or from queued or downloading.
void announceChangedQueue();

/// What is arranged for a download that was stopped is not to happen any more.
void cancelArrangedResume(const DQDownload& download);

}  // namespace engine
