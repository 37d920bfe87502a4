#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <memory>

#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

constexpr quint32 bookmarkMark = 0x4f424d31;  // "OBM1"

/// What stays with a file when it is renamed. Inode numbers are used again after a file is gone,
/// so the time of birth tells two users of one number apart. Device numbers change between starts
/// of the machine, so they count only where a file system keeps no time of birth.
struct Identity {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 bornSeconds = 0;
    quint32 bornNanoseconds = 0;

    [[nodiscard]] bool knowsBirth() const { return bornSeconds != 0; }
    [[nodiscard]] bool isSame(const Identity& other) const {
        if (inode != other.inode)
            return false;
        if (!knowsBirth() || !other.knowsBirth())
            return device == other.device;
        return bornSeconds == other.bornSeconds && bornNanoseconds == other.bornNanoseconds;
    }
};

std::optional<Identity> identityOf(const QByteArray& path) {
    struct statx status {};
    if (statx(AT_FDCWD, path.constData(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
              STATX_INO | STATX_BTIME, &status) != 0)
        return std::nullopt;
    Identity identity{(quint64{status.stx_dev_major} << 32) | status.stx_dev_minor, status.stx_ino,
                      0, 0};
    if ((status.stx_mask & STATX_BTIME) != 0) {
        identity.bornSeconds = status.stx_btime.tv_sec;
        identity.bornNanoseconds = status.stx_btime.tv_nsec;
    }
    return identity;
}

/// Looks for a file in folders and in the folders directly inside them, up to a limit.
class Search {
public:
    explicit Search(const Identity& wanted) : wanted_(wanted) {}

    [[nodiscard]] QString findNear(const QString& folder) {
        QStringList inside;
        QString found = findIn(folder, inside);
        for (const QString& subfolder : inside) {
            if (!found.isEmpty())
                break;
            QStringList deeper;
            found = findIn(subfolder, deeper);
        }
        return found;
    }

private:
    QString findIn(const QString& folder, QStringList& subfolders) {
        const QByteArray path = QFile::encodeName(folder);
        const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(path.constData()), closedir);
        while (entries && entriesLeft_ > 0) {
            const dirent* const entry = readdir(entries.get());
            if (entry == nullptr)
                break;
            --entriesLeft_;
            const QByteArray name(entry->d_name);
            // The number in the listing spares a look at each file.
            if (entry->d_ino == wanted_.inode && isWanted(path + '/' + name))
                return folder + u'/' + QFile::decodeName(name);
            if (entry->d_type == DT_DIR && !name.startsWith('.'))
                subfolders.append(folder + u'/' + QFile::decodeName(name));
        }
        return {};
    }

    [[nodiscard]] bool isWanted(const QByteArray& path) const {
        const std::optional<Identity> identity = identityOf(path);
        return identity && wanted_.isSame(*identity);
    }

    Identity wanted_;
    int entriesLeft_ = 50'000;
};

}  // namespace

QByteArray fileBookmark(const QString& path) {
    const std::optional<Identity> identity = identityOf(QFile::encodeName(path));
    if (!identity)
        return {};
    QByteArray bookmark;
    QDataStream stream(&bookmark, QIODevice::WriteOnly);
    stream << bookmarkMark << identity->device << identity->inode << identity->bornSeconds
           << identity->bornNanoseconds << QDir::cleanPath(path).toUtf8();
    return bookmark;
}

QString resolveFileBookmark(const QByteArray& bookmark) {
    QDataStream stream(bookmark);
    quint32 mark = 0;
    Identity identity;
    QByteArray encodedPath;
    stream >> mark >> identity.device >> identity.inode >> identity.bornSeconds >>
        identity.bornNanoseconds >> encodedPath;
    if (stream.status() != QDataStream::Ok || mark != bookmarkMark)
        return {};
    const QString path = QString::fromUtf8(encodedPath);
    if (pathExists(path))
        return path;
    const QString folder = QFileInfo(path).path();
    Search search(identity);
    for (const QString& place : {folder, QFileInfo(folder).path(), downloadsUserFolder()}) {
        const QString found = search.findNear(place);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

}  // namespace platform
