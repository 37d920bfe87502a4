#pragma once

#include <QString>
#include <optional>
#include <vector>

namespace platform {

/// An application that the desktop knows by an entry (Desktop Entry Specification).
struct ApplicationEntry {
    QString identifier;  ///< Of the desktop entry, as in "org.gnome.eog.desktop".
    QString name;        ///< In the user's language.
    QString iconName;    ///< Of the icon theme, or a path. May be empty.
};

/// Those that open files with an extension (without its dot), the default one first; kept for the
/// life of the process. Main thread.
[[nodiscard]] std::vector<ApplicationEntry> applicationsForExtension(const QString& extension);

/// Nothing: there is none of that name (any more). Main thread.
[[nodiscard]] std::optional<ApplicationEntry> applicationWithIdentifier(const QString& identifier);

/// Opens a file with an application. False: it is there but could not be started. Without an
/// identifier, or if there is no such application, nothing is opened, and that is no failure.
bool openFileWithApplication(const QString& path, const QString& identifier);

}  // namespace platform
