#include "platform/files/mounts.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <mutex>

#include "platform/files/descriptor.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

QString unescaped(const QByteArray& field) {
    QByteArray path;
    for (qsizetype i = 0; i < field.size(); ++i) {
        bool isOctal = false;
        const int code = field[i] == '\\' ? field.mid(i + 1, 3).toInt(&isOctal, 8) : 0;
        path += isOctal ? static_cast<char>(code) : field[i];
        i += isOctal ? 3 : 0;
    }
    return QFile::decodeName(path);
}

bool isInside(const QString& path, const QString& folder) {
    return path.startsWith(folder) &&
           (folder.endsWith(u'/') || path.size() == folder.size() || path[folder.size()] == u'/');
}

/// The part of `path` with so many components below `root`; empty if there are fewer.
QString cutBelow(const QString& path, const QString& root, int components) {
    if (!path.startsWith(root + u'/'))
        return {};
    const QStringList parts = path.mid(root.size() + 1).split(u'/');
    if (parts.size() < components)
        return {};
    return root + u'/' + parts.first(components).join(u'/');
}

struct RemovableRoot {
    QString path;
    /// How many components below it name a medium.
    int depth;
};

/// Reads the table of mounts again only when the kernel says that it changed.
class MountTable {
public:
    QStringList current() {
        const std::lock_guard guard(lock_);
        if (!table_.isOpen())
            table_ = Descriptor(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
        pollfd change{table_.get(), POLLPRI, 0};
        if (!isRead_ || (poll(&change, 1, 0) > 0 && (change.revents & POLLERR) != 0)) {
            mountPoints_ = mountPoints(read());
            isRead_ = true;
        }
        return mountPoints_;
    }

private:
    QByteArray read() const {
        QByteArray text;
        QByteArray block(64LL * 1024, Qt::Uninitialized);
        lseek(table_.get(), 0, SEEK_SET);
        ssize_t got = 0;
        constexpr qsizetype longest = 16LL * 1024 * 1024;
        while (text.size() < longest && (got = ::read(table_.get(), block.data(),
                                                      static_cast<std::size_t>(block.size()))) > 0)
            text.append(block.constData(), got);
        return text;
    }

    std::mutex lock_;  ///< Guards all that follows.
    Descriptor table_;
    bool isRead_ = false;
    QStringList mountPoints_;
};

}  // namespace

QStringList mountPoints(const QByteArray& mountInfo) {
    QStringList points;
    for (const QByteArray& line : mountInfo.split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        constexpr qsizetype mountPoint = 4;
        if (fields.size() > mountPoint)
            points.append(unescaped(fields[mountPoint]));
    }
    return points;
}

QString volumePathAmong(const QStringList& mountPoints, const QString& path) {
    const QString clean = QDir::cleanPath(path);
    QString longest = u"/"_s;
    for (const QString& point : mountPoints) {
        if (point.size() > longest.size() && isInside(clean, point))
            longest = point;
    }
    static const QList<RemovableRoot> roots{{u"/media"_s, 2}, {u"/run/media"_s, 2}, {u"/mnt"_s, 1}};
    for (const RemovableRoot& root : roots) {
        // The folder of the media may be a file system of its own, which is none of them.
        if (longest != root.path && isInside(longest, root.path))
            return longest;
        const QString medium = cutBelow(clean, root.path, root.depth);
        if (!medium.isEmpty())
            return medium;
    }
    return longest;
}

QString volumePath(const QString& path) {
    static MountTable table;
    return volumePathAmong(table.current(), path);
}

}  // namespace platform
