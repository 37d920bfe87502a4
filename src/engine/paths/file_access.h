#pragma once

#include <QString>
#include <QStringList>

namespace engine {

struct Environment;

/// Leave to write to folders, where the desktop gives it for each of them, for as long as there are
/// downloads that need it. Main thread.
class FileAccess {
public:
    explicit FileAccess(const Environment& environment) : environment_(environment) {}

    enum class Asking { No, IfNeeded };

    /// Where a download may write to reach that folder. Empty: it may not, or there is no folder.
    [[nodiscard]] QString confirmDownloadAccess(const QString& folder, Asking asking = Asking::No);
    /// Nothing is queued or downloading any more: gives back what was granted.
    void end();

private:
    const Environment& environment_;
    /// Keys of the grants; one can stand here several times.
    QStringList openBookmarks_;
};

}  // namespace engine
