#include <QDir>
#include <QFileInfo>

#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// As many as the kernel follows before it says ELOOP.
constexpr int mostLinks = 40;

QString resolved(const QString& path, int linksLeft) {
    const QString clean = QDir::cleanPath(path);
    const QFileInfo file(clean);
    const QString canonical = file.canonicalFilePath();
    if (!canonical.isEmpty())
        return canonical;
    // A link that leads nowhere yet would be followed by whoever writes.
    if (file.isSymLink() && linksLeft > 0)
        return resolved(file.symLinkTarget(), linksLeft - 1);
    if (file.isRoot())
        return clean;
    const QString parent = resolved(file.path(), linksLeft);
    return (parent == u"/"_s ? parent : parent + u'/') + file.fileName();
}

}  // namespace

QString resolvedPath(const QString& path) {
    return path.startsWith(u'/') ? resolved(path, mostLinks) : QString();
}

}  // namespace platform
