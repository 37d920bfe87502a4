#pragma once

#include <QString>

namespace http {

/// What the program says of itself. Empty: not known.
struct ProgramIdentity {
    QString displayName;
    QString name;
    QString shortVersion;
    QString version;
};

/// The running program's, from the application object.
[[nodiscard]] ProgramIdentity currentProgramIdentity();

/// "NAME VERSION (Macintosh; Mac OS X 10.8.0; LOCALE)". Empty for a program without a name.
[[nodiscard]] QString userAgentForProgram(const ProgramIdentity& program,
                                          const QString& localeIdentifier);

}  // namespace http
