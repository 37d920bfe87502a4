#pragma once

#include <QString>
#include <QStringList>

namespace platform {

class UserDefaults;

/// What a program that runs once has to say. Both texts end in a line feed or are empty.
struct CommandResult {
    /// 0: done; 1: there is no such value, or it could not be written; 2: wrong usage.
    int status = 0;
    QString output;
    QString errors;
};

/// Reads and changes the stored values of `defaults` as the arguments (without the program's name)
/// say: `read`, `write`, `delete` and `list`, for another suite of values behind `-suite NAME`.
[[nodiscard]] CommandResult runDefaultsCommand(const QStringList& arguments,
                                               UserDefaults& defaults);

}  // namespace platform
