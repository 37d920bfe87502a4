#pragma once

#include <QString>

#include "engine/record/known_file.h"

namespace engine {

class DownloadRecord;
class DQDownload;

/// Partial data that a server's answer has put in doubt: it lies beside the new data, which comes
/// from the first byte into a place of its own, until that is complete. Kept under a key of the
/// settings, so that a restart knows of it. Main thread.

/// Puts what there is of the file aside, with what is known of it, so that the download can begin
/// anew. What is aside already stays, and the newer data goes.
void putPartialDataAside(DQDownload& download);
/// Takes it back if the new attempt has brought nothing.
void takePartialDataBack(DQDownload& download);
/// The file is complete, or not wanted any more.
void dropPartialDataAside(DQDownload& download);

/// What is known of the file that is aside; nothing is if none is.
[[nodiscard]] KnownFile knownFileAside(const DownloadRecord& download);
/// The primary partial file that is aside. Empty: none is.
[[nodiscard]] QString partialPathAside(const DownloadRecord& download);

}  // namespace engine
