#include <QDir>
#include <QFile>
#include <QStandardPaths>

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

}  // namespace

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
    return QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
}

QString desktopUserFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
}

}  // namespace platform
