#pragma once

#include <QDateTime>
#include <QStringList>
#include <optional>

#include "engine/record/checksum.h"

namespace platform {
class Descriptor;
}

namespace engine {

class DownloadRecord;

/// What is done with a finished file at its final path.

/// What a file is told of where it came from. Gathered on the main thread, written on any.
struct FileOrigin {
    std::optional<QDateTime> modificationDate;  ///< The server's. Nothing: it stays as it is.
    QStringList sources;                        ///< Addresses, the last of redirects first.
    bool sourcesAreComment = false;             ///< They are its comment too.
    QByteArray mark;                            ///< See `markOf`.
    std::optional<Checksum> checksum;           ///< What it adds up to. Nothing: not looked at.

    /// Not every file system keeps it when it is given a file of another one.
    [[nodiscard]] bool isKnownTo(const QString& path) const;
};
[[nodiscard]] FileOrigin originOf(const DownloadRecord& download);
void writeOrigin(const FileOrigin& origin, const QString& path);
/// To a file that is going to be at `path`.
void writeOrigin(const FileOrigin& origin, const platform::Descriptor& file, const QString& path);

/// Hands it to the application of the first matching rule whose application takes it.
void openByRule(const DownloadRecord& download, const QString& path);

}  // namespace engine
