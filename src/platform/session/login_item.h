#pragma once

#include <QString>
#include <optional>

#include "platform/base/error.h"

namespace platform {

/// Whether the program starts when the user logs in, by an entry in the folder of the desktop's
/// autostart (Desktop Application Autostart Specification). Each operation looks at the disk; any
/// thread.
class LoginItem {
public:
    /// For this program, and for the user of this process.
    LoginItem();
    LoginItem(QString entryPath, QString program);

    [[nodiscard]] const QString& entryPath() const { return entryPath_; }
    /// An entry that is there but switched off, as desktops do it, does not count.
    [[nodiscard]] bool isEnabled() const;
    /// Nothing: done. A failure is logged too.
    std::optional<Error> setEnabled(bool enabled) const;

private:
    [[nodiscard]] QByteArray entry() const;

    const QString entryPath_;
    const QString program_;  ///< Path of the executable.
};

}  // namespace platform
