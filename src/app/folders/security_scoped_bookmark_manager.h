#pragma once

#include <QByteArray>
#include <QMap>
#include <QSet>
#include <QString>
#include <functional>
#include <optional>

#include "platform/base/clock.h"
#include "platform/base/user_defaults.h"

namespace app {

class Questions;

/// What the sandbox lets this process do, as the system says it. Tests put their own here.
struct SandboxView {
    bool isSandboxed = false;
    /// access(2); R_OK or W_OK.
    std::function<bool(const QString& path, int mode)> canAccess;
    /// Where a document of the portal lies for everybody else. Empty: unknown.
    std::function<QString(const QString& path)> hostPath;

    [[nodiscard]] static SandboxView ofThisProcess();
};

/// Folders that the user unlocked for a program that may reach no others (Flatpak, Snap). A portal
/// gives such a folder a path of its own inside the sandbox; the bookmark remembers it under the
/// path that everybody else knows. Without a sandbox permissions alone decide. Main thread.
class DQSecurityScopedBookmarkManager {
public:
    enum class Panel { Never, Shown };
    struct Access {
        bool isGranted = false;
        /// Key of the bookmark that was opened; empty: none was needed.
        QString bookmarkPath;
        /// Where this process reaches it.
        QString path;
    };

    DQSecurityScopedBookmarkManager(platform::UserDefaults& defaults, const platform::Clock& clock,
                                    Questions& questions,
                                    SandboxView sandbox = SandboxView::ofThisProcess());

    /// A list or another file that is to be read.
    [[nodiscard]] Access confirmReadAccess(const QString& path, Panel panel);
    /// A folder that is to be written to. `explanation` stands in the panel, if there is one.
    [[nodiscard]] Access confirmWriteAccess(const QString& folder, Panel panel,
                                            const QString& explanation);
    /// Of a key; unknown ones are ignored.
    void stopAccessingBookmark(const QString& path);

    /// Keeps a folder that the user chose in a panel. False: it could not be kept.
    bool createBookmark(const QString& chosen);
    /// For a folder that the user chose for use from now on: keeps it, and answers its path for
    /// everybody, which outlives the sandbox. Without one the path as it was chosen.
    [[nodiscard]] QString keepChosenFolder(const QString& chosen);

private:
    /// By resolved path without a trailing slash; read anew each time, since it may be edited.
    [[nodiscard]] QMap<QString, QString> bookmarks() const;
    [[nodiscard]] std::optional<Access> throughBookmark(const QString& path, int mode);
    [[nodiscard]] Access confirmAccess(int mode, const QString& path, Panel panel,
                                       const QString& explanation);
    [[nodiscard]] Access askFor(const QString& folder, int mode, const QString& explanation);
    bool createBookmark(const QString& chosen, const QString& path);

    /// What the user refused counts for everybody who asks right after.
    struct Refusal {
        QString folder;
        platform::Seconds at = 0;
    };

    platform::UserDefaults& defaults_;
    const platform::Clock& clock_;
    Questions& questions_;
    const SandboxView sandbox_;
    QSet<QString> accessed_;
    std::optional<Refusal> refusal_;
};

/// The one that front ends use. Null: there is none.
void installBookmarkManager(DQSecurityScopedBookmarkManager* manager);
[[nodiscard]] DQSecurityScopedBookmarkManager* bookmarkManager();

}  // namespace app
