#include "http/request/temporary_path.h"

#include <QDir>
#include <QFile>
#include <QUuid>

#include "platform/files/files.h"

namespace http {

QString makeTemporaryPath() {
    return QDir(QDir::tempPath()).filePath(QUuid::createUuid().toString(QUuid::WithoutBraces));
}

bool removeFileIfPresent(const QString& path) {
    return !platform::pathExists(path) || QFile::remove(path);
}

}  // namespace http
