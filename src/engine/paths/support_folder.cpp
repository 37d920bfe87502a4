#include "engine/paths/support_folder.h"

#include <unistd.h>
#include <QDir>
#include <QFile>

#include <cerrno>

#include "engine/environment.h"
#include "links/paths/folders.h"
#include "links/paths/path_components.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

QString pathInSupportFolder(const Environment& environment, const QString& name) {
    const QString folder = environment.applicationSupportPath();
    return folder.isEmpty() ? QString() : links::stringByAppendingPathComponent(folder, name);
}

}  // namespace

QString queueArchivePath(const Environment& environment) {
    return pathInSupportFolder(environment, u"Queue.plist"_s);
}

QString intermediateDownloadBasePath(const Environment& environment) {
    const QString folder = pathInSupportFolder(environment, u"Downloads"_s);
    return !folder.isEmpty() && links::checkFolderPathAndCreateIfNecessary(folder)
               ? folder
               : QDir::tempPath();
}

std::optional<platform::Error> removeIntermediateFiles(const Environment& environment) {
    if (const QString folder = pathInSupportFolder(environment, u"Downloads"_s); !folder.isEmpty())
        QDir(folder).removeRecursively();
    const QByteArray queue = QFile::encodeName(queueArchivePath(environment));
    if (queue.isEmpty() || unlink(queue.constData()) == 0 || errno == ENOENT)
        return std::nullopt;
    return platform::posixError(errno);
}

}  // namespace engine
