#pragma once

#include <QDateTime>
#include <QStringList>
#include <optional>

namespace engine {

class DQDownload;

/// What is done with a finished file at its final path.

/// What a file is told of where it came from. Gathered on the main thread, written on any.
struct FileOrigin {
    std::optional<QDateTime> modificationDate;  ///< The server's. Nothing: it stays as it is.
    QStringList sources;                        ///< Addresses, the last of redirects first.
};
[[nodiscard]] FileOrigin originOf(const DQDownload& download);
void writeOrigin(const FileOrigin& origin, const QString& path);

/// Hands it to the application of the first matching rule whose application takes it.
void openByRule(const DQDownload& download, const QString& path);

}  // namespace engine
