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

    /// Whether a download may write there; may ask the user. False for an empty path.
    [[nodiscard]] bool confirmDownloadAccess(const QString& folder);
    /// Nothing is queued or downloading any more: gives back what was granted.
    void end();

private:
    const Environment& environment_;
    /// Keys of the grants; one can stand here several times.
    QStringList openBookmarks_;
};

}  // namespace engine
