#pragma once

#include <QString>

namespace engine {

class DQDownload;

/// What is done with a finished file at its final path.

/// Gives it the server's date of modification, if the settings say so.
void adoptServerDate(const DQDownload& download, const QString& path);
/// Writes on it where it came from.
void storeSources(const DQDownload& download, const QString& path);
/// Hands it to the application of the first matching rule whose application takes it.
void openByRule(const DQDownload& download, const QString& path);

}  // namespace engine
