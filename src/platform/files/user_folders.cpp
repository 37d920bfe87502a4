#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <chrono>
#include <cstdlib>
#include <tuple>

#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// Relative paths in these variables are to be ignored (XDG Base Directory Specification).
QString baseFolder(const char* variable, const QString& fallback) {
    const QString path = QFile::decodeName(qgetenv(variable));
    return (path.startsWith(u'/') ? QDir::cleanPath(path) : fallback) + u"/Orlop"_s;
}

QString inHome(const QString& path) {
    return QDir::homePath() + u'/' + path;
}

/// A folder that the user's `user-dirs.dirs` names (xdg-user-dirs). The folder is asked for several
/// times for each download: that file is read again only when it has changed, and looked at no more
/// than ten times a second.
class KnownUserFolder {
public:
    explicit KnownUserFolder(QStandardPaths::StandardLocation location) : location_(location) {}

    QString path() {
        constexpr std::chrono::milliseconds restBetweenLooks(100);
        const auto now = std::chrono::steady_clock::now();
        const char* const home = std::getenv("HOME");
        const char* const config = std::getenv("XDG_CONFIG_HOME");
        if (path_.isEmpty() || now - lookedAt_ >= restBetweenLooks || origin_.home != home ||
            origin_.config != config) {
            lookedAt_ = now;
            lookAt({home, config, {}});
        }
        return path_;
    }

private:
    struct Origin {
        QByteArray home, config;
        std::tuple<ino_t, off_t, time_t, long> file;

        bool operator==(const Origin&) const = default;
    };

    void lookAt(Origin now) {
        const QByteArray config = now.config.isEmpty() ? now.home + "/.config" : now.config;
        struct stat status {};
        if (stat((config + "/user-dirs.dirs").constData(), &status) == 0)
            now.file = {status.st_ino, status.st_size, status.st_mtim.tv_sec,
                        status.st_mtim.tv_nsec};
        if (path_.isEmpty() || origin_ != now)
            path_ = QStandardPaths::writableLocation(location_);
        origin_ = now;
    }

    const QStandardPaths::StandardLocation location_;
    std::chrono::steady_clock::time_point lookedAt_;
    Origin origin_;
    QString path_;
};

}  // namespace

void adoptHomeFolder() {
    const passwd* const user = qEnvironmentVariableIsEmpty("HOME") ? getpwuid(geteuid()) : nullptr;
    if (user != nullptr && user->pw_dir != nullptr)
        qputenv("HOME", user->pw_dir);
}

QString userDataFolder() {
    return baseFolder("XDG_DATA_HOME", inHome(u".local/share"_s));
}

QString userConfigFolder() {
    return baseFolder("XDG_CONFIG_HOME", inHome(u".config"_s));
}

QString userStateFolder() {
    return baseFolder("XDG_STATE_HOME", inHome(u".local/state"_s));
}

QString userCacheFolder() {
    return baseFolder("XDG_CACHE_HOME", inHome(u".cache"_s));
}

QString runtimeFolder() {
    return baseFolder("XDG_RUNTIME_DIR", userCacheFolder() + u"/runtime"_s);
}

QString downloadsUserFolder() {
    thread_local KnownUserFolder folder(QStandardPaths::DownloadLocation);
    return folder.path();
}

QString desktopUserFolder() {
    thread_local KnownUserFolder folder(QStandardPaths::DesktopLocation);
    return folder.path();
}

}  // namespace platform
