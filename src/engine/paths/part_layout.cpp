#include "engine/paths/part_layout.h"

#include <sys/stat.h>
#include <sys/statfs.h>
#include <unistd.h>
#include <QFile>

#include <array>
#include <map>
#include <utility>

#include "engine/paths/intermediate_files.h"
#include "links/paths/path_components.h"
#include "platform/files/descriptor.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

/// Larger than any block, and than what file systems allot ahead to a new file.
constexpr off_t holeSize = off_t{1} << 20;
constexpr blkcnt_t statBlock = 512;

}  // namespace

PartLayout layoutOfPartialData(const QString& primaryPath) {
    return !primaryPath.isEmpty() && platform::pathExists(accelerationFragmentPath(primaryPath, 0))
               ? PartLayout::InPlace
               : PartLayout::Apart;
}

std::optional<bool> tryHole(const QString& folder) {
    const platform::TemporaryFile probe(
        QFile::encodeName(links::stringByAppendingPathComponent(folder, u"probe"_s)));
    const std::array<char, 4096> bytes{'x'};
    struct stat status {};
    if (!probe.isOpen() ||
        pwrite(probe.file().get(), bytes.data(), bytes.size(), holeSize) !=
            static_cast<ssize_t>(bytes.size()) ||
        fstat(probe.file().get(), &status) != 0)
        return std::nullopt;
    return status.st_blocks * statBlock < holeSize;
}

bool keepsHoles(const QString& folder) {
    /// A device's number may be another disk's by now, and one file system has several numbers.
    using Key = std::pair<dev_t, std::array<int, 2>>;
    static std::map<Key, bool> known;
    const QByteArray name = QFile::encodeName(folder);
    struct stat status {};
    struct statfs fileSystem {};
    if (stat(name.constData(), &status) != 0 || statfs(name.constData(), &fileSystem) != 0)
        return false;
    const Key key{status.st_dev, {fileSystem.f_fsid.__val[0], fileSystem.f_fsid.__val[1]}};
    if (const auto found = known.find(key); found != known.end())
        return found->second;
    const std::optional<bool> keeps = tryHole(folder);
    if (keeps)
        known.emplace(key, *keeps);
    return keeps.value_or(false);
}

PartPlace placeOfPart(PartLayout layout, const QString& primaryPath, const QString& ownFile,
                      qint64 start) {
    if (layout == PartLayout::Apart)
        return {ownFile, 0, {}};
    const bool isFirst = ownFile == primaryPath;
    return {primaryPath, start, isFirst ? accelerationFragmentPath(primaryPath, 0) : ownFile};
}

}  // namespace engine
