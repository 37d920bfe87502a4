#include "engine/paths/intermediate_files.h"

#include <unistd.h>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <optional>
#include <tuple>
#include <vector>

#include "engine/paths/part_journal.h"
#include "links/names/file_names.h"
#include "links/paths/folders.h"
#include "links/paths/path_components.h"
#include "platform/base/log.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

struct Fragment {
    QString path;
    qint64 worker = 0;  ///< 0: a resumed part of the primary file.
    qint64 resume = 0;  ///< 0: not a resumed part.

    [[nodiscard]] auto order() const { return std::tie(worker, resume, path); }
};

/// The number behind `marker` at the start of `text`, which is cut off. 0: there is none.
qint64 takeNumber(QStringView& text, QStringView marker) {
    if (!text.startsWith(marker))
        return 0;
    text = text.sliced(marker.size());
    qsizetype digits = 0;
    while (digits < text.size() && text[digits].isDigit())
        ++digits;
    const qint64 number = text.first(digits).toLongLong();
    text = text.sliced(digits);
    return number;
}

/// The order is taken from the numbers and not from a comparison by locale: it decides the order
/// of bytes in the finished file.
Fragment parsedFragment(const QString& path, qsizetype primaryNameLength) {
    const QString name = links::lastPathComponent(path);
    QStringView rest = QStringView(name).sliced(primaryNameLength);
    Fragment fragment{path};
    fragment.worker = takeNumber(rest, accelerationMarker);
    fragment.resume = takeNumber(rest, resumeMarker);
    return fragment;
}

bool isFirstJournal(const QString& path, const QString& primaryPath) {
    return path == accelerationFragmentPath(primaryPath, 0);
}

/// The file that a resumed part goes on from; any other path is its own.
QString ownerOfFragment(const QString& path) {
    const qsizetype marker = path.lastIndexOf(resumeMarker);
    return marker < 0 ? path : path.first(marker);
}

/// What most downloads leave: a container with the primary file, or none, and negligible files. One
/// look into the folder is enough for it, and a folder that holds something is never asked to go:
/// the portal of Debian 12 dies of that. False: it holds something else, and nothing was done.
bool removeContainerWithPrimaryFileOnly(const QString& container, const QString& primaryName) {
    QStringList paths;
    for (QDirIterator entries(
             container, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
         entries.hasNext();) {
        const QString path = entries.next();
        const QString name = entries.fileName();
        const bool isOurs = name == primaryName || links::isNegligibleFilename(name);
        if (!isOurs || entries.fileInfo().isDir())
            return false;
        paths.append(path);
    }
    for (const QString& path : paths)
        QFile::remove(path);
    return rmdir(QFile::encodeName(container).constData()) == 0;
}

}  // namespace

QString accelerationFragmentPath(const QString& primaryPath, qint64 index) {
    return primaryPath + accelerationMarker + QString::number(index);
}

QString freeFragmentPath(const QString& primaryPath) {
    qint64 index = 1;
    while (platform::pathExists(accelerationFragmentPath(primaryPath, index)))
        ++index;
    return accelerationFragmentPath(primaryPath, index);
}

bool isDownloadContainer(const QString& folder) {
    return folder.endsWith(u".orlop", Qt::CaseInsensitive);
}

QStringList fragmentPathsForIntermediateDownloadTargetPath(const QString& primaryPath) {
    if (primaryPath.isEmpty())
        return {};
    const QString primaryName = links::lastPathComponent(primaryPath);
    std::vector<Fragment> found;
    QDirIterator entries(links::stringByDeletingLastPathComponent(primaryPath),
                         QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        const QString name = entries.fileName();
        const bool isFragment = name.startsWith(primaryName + accelerationMarker) ||
                                name.startsWith(primaryName + resumeMarker);
        if (isFragment && !links::isNegligibleFilename(name))
            found.push_back(parsedFragment(path, primaryName.size()));
    }
    std::sort(found.begin(), found.end(),
              [](const Fragment& a, const Fragment& b) { return a.order() < b.order(); });
    QStringList paths;
    for (const Fragment& fragment : found)
        paths.append(fragment.path);
    return paths;
}

std::optional<qint64> bytesReceivedIn(const QString& path) {
    const std::optional<qint64> size = platform::fileSize(path);
    const qsizetype marker = path.lastIndexOf(accelerationMarker);
    const QString primaryPath = marker < 0 ? path : path.first(marker);
    const QString firstJournal = accelerationFragmentPath(primaryPath, 0);
    if (!size || !platform::pathExists(firstJournal))
        return size;
    const auto entry = PartJournal::read(marker < 0 ? firstJournal : path);
    // Whoever has cut the file, or put another one in its place, has taken the bytes away.
    const qint64 there = platform::fileSize(primaryPath).value_or(0);
    return entry ? std::clamp<qint64>(there - entry->start, 0, entry->received) : 0;
}

PartialFileSizes measurePartialFiles(const QString& primaryPath) {
    PartialFileSizes sizes;
    QStringList fragments = fragmentPathsForIntermediateDownloadTargetPath(primaryPath);
    // It speaks for the primary file.
    fragments.removeAll(accelerationFragmentPath(primaryPath, 0));
    const std::optional<qint64> primarySize = bytesReceivedIn(primaryPath);
    if (fragments.isEmpty()) {
        if (!primarySize)
            platform::log(u"cannot get size for primary file: %1"_s.arg(primaryPath));
        sizes.total = primarySize.value_or(0);
        return sizes;
    }
    for (const QString& path : fragments) {
        const std::optional<qint64> size = bytesReceivedIn(path);
        if (!size)
            platform::log(u"cannot seek in partial file: %1"_s.arg(path));
        sizes.byPath[ownerOfFragment(path)] += size.value_or(0);
        sizes.total += size.value_or(0);
    }
    sizes.byPath[primaryPath] = primarySize.value_or(0);
    sizes.total += primarySize.value_or(0);
    return sizes;
}

void dropPartJournals(const QString& primaryPath) {
    // Without this one nobody looks at the others.
    if (QFile::remove(accelerationFragmentPath(primaryPath, 0)))
        removeFragments(primaryPath);
}

void removeFragments(const QString& primaryPath) {
    for (const QString& path : fragmentPathsForIntermediateDownloadTargetPath(primaryPath)) {
        if (!isFirstJournal(path, primaryPath))
            QFile::remove(path);
    }
}

void removePartialFiles(const QString& primaryPath) {
    if (primaryPath.isEmpty())
        return;
    const QString folder = links::stringByDeletingLastPathComponent(primaryPath);
    if (isDownloadContainer(folder) &&
        removeContainerWithPrimaryFileOnly(folder, links::lastPathComponent(primaryPath)))
        return;
    const QString firstJournal = accelerationFragmentPath(primaryPath, 0);
    // Cut short, this must not leave a file whose holes nothing tells from data.
    if (platform::pathExists(firstJournal) && !QFile::resize(primaryPath, 0))
        QFile::remove(primaryPath);
    removeFragments(primaryPath);
    QFile::remove(firstJournal);
    QFile::remove(primaryPath);
    if (isDownloadContainer(folder))
        links::removeFolderIfVirtuallyEmpty(folder);
}

}  // namespace engine
