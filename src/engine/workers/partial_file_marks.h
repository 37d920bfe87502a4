#pragma once

#include <QString>
#include <QtGlobal>

namespace engine {

/// What is written on a partial file about itself, in extended attributes. On a file system
/// without them nothing is known, and every file counts as it stands.

/// Nothing of the new file is on the disk yet. Any thread.
void markUnsynced(int file);
/// So many bytes of the open file are on the disk, if it still has a mark: one that was finished
/// meanwhile has lost it. Any thread.
void markSynced(int file, qint64 bytes);
/// It says nothing about itself any more: journals do. Any thread.
void leaveToJournals(int file);
/// Cuts off what may not have reached the disk before the machine last went down. While it has been
/// up since the file was written, all of it counts: what a killed process wrote is not lost.
void dropUnsyncedTail(const QString& path);

/// The one file of an unknown length has come whole: it has only to be moved.
void markFinishing(const QString& path);
[[nodiscard]] bool isMarkedFinishing(const QString& path);

/// Takes the marks off before the file becomes the user's. Any thread.
void removePartialFileMarks(const QString& path);

}  // namespace engine
