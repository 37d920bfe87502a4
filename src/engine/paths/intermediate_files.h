#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>

namespace engine {

/// What lies beside the first partial file of a download: the files of further workers, which end
/// in ".orlop-xf-" and a number, and of resumed copies, which end in ".orlop-rf-" and a number.

inline const QString accelerationMarker = QStringLiteral(".orlop-xf-");
inline const QString resumeMarker = QStringLiteral(".orlop-rf-");

/// The file of worker `index`, counted from 1 after the first worker; 0 see `PartLayout`.
[[nodiscard]] QString accelerationFragmentPath(const QString& primaryPath, qint64 index);

/// Of a further worker: a name that nothing has.
[[nodiscard]] QString freeFragmentPath(const QString& primaryPath);

/// Whether a folder's name says that it holds one download and nothing else.
[[nodiscard]] bool isDownloadContainer(const QString& folder);

/// All fragments of a primary file, in the order of their bytes. None for an empty path.
[[nodiscard]] QStringList fragmentPathsForIntermediateDownloadTargetPath(
    const QString& primaryPath);

/// How much has come of what a file of a download stands for: its length, or what its journal says.
/// Nothing: it is not there.
[[nodiscard]] std::optional<qint64> bytesReceivedIn(const QString& path);

/// What has arrived of a download.
struct PartialFileSizes {
    qint64 total = 0;
    /// The primary file and the file of each worker, the resumed parts counted to theirs. Empty if
    /// there are no fragments.
    QHash<QString, qint64> byPath;
};
[[nodiscard]] PartialFileSizes measurePartialFiles(const QString& primaryPath);

/// All bytes lie in the primary file, and are synced: from here on its length says so. Any thread.
void dropPartJournals(const QString& primaryPath);
/// The parts behind the first are given up.
void removeFragments(const QString& primaryPath);
/// Deletes the primary file and its fragments, and the download's own folder if nothing of value
/// is left in it. Failures are ignored.
void removePartialFiles(const QString& primaryPath);

}  // namespace engine
