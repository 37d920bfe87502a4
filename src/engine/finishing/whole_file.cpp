#include "engine/finishing/whole_file.h"

#include <fcntl.h>
#include <unistd.h>
#include <QFile>

#include <cerrno>

#include "links/paths/path_components.h"
#include "platform/files/descriptor.h"

namespace engine {
namespace {

/// Without the privilege that a link by descriptor alone would need (open(2)).
bool giveName(const platform::Descriptor& file, const QByteArray& name) {
    const QByteArray self = "/proc/self/fd/" + QByteArray::number(file.get());
    return linkat(AT_FDCWD, self.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) == 0;
}

}  // namespace

std::optional<platform::Error> placeWholeFile(const QByteArray& body, const QString& target,
                                              const FileOrigin& origin) {
    const QByteArray folder = QFile::encodeName(links::stringByDeletingLastPathComponent(target));
    const platform::Descriptor file(
        ::open(folder.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, platform::newFileMode));
    if (!file.isOpen() || !platform::writeFully(file, body.constData(), body.size()))
        return platform::posixError(errno);
    writeOrigin(origin, file, target);
    const QByteArray name = QFile::encodeName(target);
    if (fdatasync(file.get()) != 0 || !giveName(file, name))
        return platform::posixError(errno);
    platform::syncFolderOf(name);
    return std::nullopt;
}

}  // namespace engine
