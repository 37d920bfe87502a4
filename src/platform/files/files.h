#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <optional>
#include <span>

#include "platform/base/error.h"

namespace platform {

class Descriptor;

/// A leading "~" or "~/" becomes the home folder.
[[nodiscard]] QString expandTilde(const QString& path);
/// The home folder at the start becomes "~".
[[nodiscard]] QString abbreviateWithTilde(const QString& path);

/// Where a file of this path is or would be: all links followed, also one that leads nowhere yet.
/// Without a slash at the end. Empty: the path is not absolute.
[[nodiscard]] QString resolvedPath(const QString& path);

/// Follows no link at the end: a dangling link exists.
[[nodiscard]] bool pathExists(const QString& path);
/// Whether the file system finds one and the same file, folder or link at both.
[[nodiscard]] bool isSameFile(const QString& path, const QString& other);

/// Writes a temporary beside `path`, syncs it, renames it over `path` and syncs the folder; mode
/// 0600. Nothing: done. The old file stays whole whatever happens.
[[nodiscard]] std::optional<Error> writeFileAtomically(const QString& path, const QByteArray& data);
/// The same of content that comes in many pieces.
[[nodiscard]] std::optional<Error> writeFileAtomically(const QString& path,
                                                       std::span<const QByteArray> pieces);

/// The same without waiting for the disk: what a killed program has written so is there, what came
/// just before a power failure may not be.
[[nodiscard]] std::optional<Error> writeFileAtOnce(const QString& path, const QByteArray& data);

struct FileContents {
    QByteArray data;
    /// Set: could not be read; code ENOENT: there is none.
    std::optional<Error> error;
};
/// Refuses more than `maximumBytes` with EFBIG.
[[nodiscard]] FileContents readFile(const QString& path, qint64 maximumBytes);

/// Logs that a file of the program's own cannot be read, which says nothing of what is in it: it is
/// left alone, and must not be written over in this run.
void logUnreadableFile(const QString& path, const Error& error);

/// Moves a file that was read and cannot be understood out of the way, to a free name beside it
/// that ends in
/// ".damaged-DATE", and logs it. The new path; empty if even that failed.
QString keepDamagedFileAside(const QString& path);

/// Renames without ever replacing (renameat2 with RENAME_NOREPLACE); across file systems copies
/// to a temporary beside the target, syncs, places it without replacing and removes the source.
/// Nothing: done. EEXIST: the target exists. EXDEV: something other than a regular file would
/// have to be copied.
[[nodiscard]] std::optional<Error> moveFile(const QString& from, const QString& to);

/// Size in bytes. Nothing: no such file, or not a regular one.
[[nodiscard]] std::optional<qint64> fileSize(const QString& path);

/// Extended attributes, of the link itself where it is one. Names as given; the caller supplies
/// the "user." prefix. Nothing: absent, empty or not supported.
[[nodiscard]] bool setExtendedAttribute(const QString& path, const QString& name,
                                        const QByteArray& value);
[[nodiscard]] bool setExtendedAttribute(const Descriptor& file, const QString& name,
                                        const QByteArray& value);
[[nodiscard]] std::optional<QByteArray> extendedAttribute(const QString& path, const QString& name);

/// Moves to the desktop's Trash (freedesktop.org Trash specification). False: there is none for
/// this file, or it could not be moved; it stays where it is.
[[nodiscard]] bool moveToTrash(const QString& path);

/// Where a mounted file system begins: the longest mount point that is a prefix of the path; "/"
/// if there is none. A path at or below a removable medium's folder ("/media/USER/NAME",
/// "/mnt/NAME", "/run/media/USER/NAME") answers that folder even while nothing is mounted there.
[[nodiscard]] QString volumePath(const QString& path);

/// A token by which a moved file can be found again on the same file system, and the search for
/// it: where it was (whatever lies there now), then in that folder, its parent and the downloads
/// folder, one level deep. Empty: none could be made, or the file is not found.
[[nodiscard]] QByteArray fileBookmark(const QString& path);
[[nodiscard]] QString resolveFileBookmark(const QByteArray& bookmark);

/// Gives the process the user's home folder if the environment names none, as in a bare service. To
/// be called before there is a second thread.
void adoptHomeFolder();

/// The XDG base and user directories, with their defaults. Asking creates none of them.
[[nodiscard]] QString userDataFolder();       ///< $XDG_DATA_HOME/Orlop
[[nodiscard]] QString userConfigFolder();     ///< $XDG_CONFIG_HOME/Orlop
[[nodiscard]] QString userStateFolder();      ///< $XDG_STATE_HOME/Orlop
[[nodiscard]] QString userCacheFolder();      ///< $XDG_CACHE_HOME/Orlop
[[nodiscard]] QString runtimeFolder();        ///< $XDG_RUNTIME_DIR/Orlop, else one in the cache
[[nodiscard]] QString downloadsUserFolder();  ///< XDG_DOWNLOAD_DIR, else ~/Downloads
[[nodiscard]] QString desktopUserFolder();    ///< XDG_DESKTOP_DIR, else ~/Desktop

}  // namespace platform
