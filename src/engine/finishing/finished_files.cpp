#include "engine/finishing/finished_files.h"

#include <sys/stat.h>
#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include "engine/context.h"
#include "engine/paths/download_folder.h"
#include "engine/record/download_record.h"
#include "engine/record/known_file.h"
#include "engine/rules.h"
#include "engine/settings.h"
#include "links/paths/file_attributes.h"
#include "links/paths/path_components.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

const QString& markAttribute() {
    static const QString name = QString::fromUtf16(links::attributes::downloadMark);
    return name;
}

/// Without its answer the name is not known for sure, and with it the folder.
QStringList foldersFor(const DownloadRecord& download) {
    const QString chosen =
        platform::expandTilde(download.userSettings().string(keys::downloadFile));
    if (!chosen.isEmpty())
        return {links::stringByDeletingLastPathComponent(chosen)};
    QStringList folders{downloadBasePath(download)};
    if (download.userSettings().contains(keys::responseURL))
        return folders;
    for (const QVariant& rule : download.context().rules.specialCases())
        folders.append(platform::expandTilde(rule.toMap().value(u"Downloads Folder"_s).toString()));
    folders.removeAll({});
    folders.removeDuplicates();
    return folders;
}

/// Where files have no attributes: the partial file itself, which a move within its disk leaves
/// what it was, by its number, its length and when it was moved.
QString movedPartialFile(const DownloadRecord& download, const QString& folder) {
    const quint64 number = download.userSettings().value(keys::partialFileNumber).toULongLong();
    const qint64 length = knownFile(download.userSettings()).length;
    if (number == 0 || length <= 0)
        return {};
    for (QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
         files.hasNext();) {
        const QString path = files.next();
        struct stat status {};
        if (files.fileInfo().size() == length &&
            lstat(QFile::encodeName(path).constData(), &status) == 0 && status.st_ino == number &&
            files.fileInfo().metadataChangeTime() >= download.date())
            return path;
    }
    return {};
}

}  // namespace

QByteArray markOf(const DownloadRecord& download) {
    constexpr qsizetype enough = 32;
    const QByteArray text = download.URLString().toUtf8() + '\n' +
                            download.userSettings().value(keys::date).toByteArray();
    return QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex().first(enough);
}

QString FinishedFiles::find(const DownloadRecord& download) {
    return find(download, Sign::MarkOrNumber);
}

QString FinishedFiles::findMarked(const DownloadRecord& download) {
    return find(download, Sign::Mark);
}

QString FinishedFiles::find(const DownloadRecord& download, Sign sign) {
    const QByteArray mark = markOf(download);
    const qint64 length = knownFile(download.userSettings()).length;
    for (const QString& folder : foldersFor(download)) {
        QString path = marksIn(folder).value(mark);
        if (!path.isEmpty() && platform::extendedAttribute(path, markAttribute()) != mark)
            path.clear();
        if (path.isEmpty() && sign == Sign::MarkOrNumber)
            path = movedPartialFile(download, folder);
        // Who has changed it since then has another file.
        const auto size = path.isEmpty() ? std::nullopt : platform::fileSize(path);
        if (size && (length <= 0 || *size == length))
            return path;
    }
    return {};
}

const QHash<QByteArray, QString>& FinishedFiles::marksIn(const QString& folder) {
    const auto known = folders_.constFind(folder);
    if (known != folders_.cend())
        return *known;
    QHash<QByteArray, QString> marks;
    for (QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
         files.hasNext();) {
        const QString path = files.next();
        if (const auto mark = platform::extendedAttribute(path, markAttribute()))
            marks.insert(*mark, path);
    }
    return *folders_.insert(folder, marks);
}

}  // namespace engine
