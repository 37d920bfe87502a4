#include "engine/lifecycle/space_watch.h"

#include <QStorageInfo>
#include <algorithm>
#include <cerrno>

#include "engine/context.h"
#include "engine/lifecycle/download.h"
#include "engine/paths/intermediate_files.h"
#include "engine/record/known_file.h"
#include "links/paths/path_components.h"
#include "platform/base/log.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

constexpr platform::Seconds lookInterval = 30;
/// Room enough not to be stopped again at once, but no more than the download still needs.
constexpr qint64 enoughSpace = qint64{64} << 20;

bool isLackOfSpace(const platform::Error& error) {
    const platform::Error* cause = error.underlying.get();
    return cause && (cause->is(platform::posixErrorDomain, ENOSPC) ||
                     cause->is(platform::posixErrorDomain, EDQUOT));
}

}  // namespace

SpaceWatch::SpaceWatch(DQDownload& download)
    : download_(download), timer_(download.context().loop) {}

void SpaceWatch::resumeWhenThereIsSpace(const platform::Error& error) {
    if (isLackOfSpace(error))
        watch();
}

void SpaceWatch::watch() {
    timer_.start(lookInterval, [this] { look(); });
}

void SpaceWatch::look() {
    if (!isSpaceBack())
        return watch();
    platform::log(u"%1 goes on, there is room on the disk again"_s.arg(download_.description()));
    download_.addToQueue();
}

bool SpaceWatch::isSpaceBack() const {
    const QString path = download_.intermediateDownloadTargetPath();
    const QStorageInfo volume(folderShortOfSpace(download_));
    const bool isElsewhere =
        volume.device() != QStorageInfo(links::stringByDeletingLastPathComponent(path)).device();
    const qint64 length = knownFile(download_.userSettings()).length;
    const qint64 present = isElsewhere ? 0 : bytesReceivedIn(path).value_or(0);
    const qint64 missing = length > 0 ? std::max<qint64>(length - present, 1) : enoughSpace;
    // A copy takes all of it or fails again.
    const qint64 wanted = isElsewhere ? missing : std::min(missing, enoughSpace);
    return volume.isValid() && volume.bytesAvailable() >= wanted;
}

QString folderShortOfSpace(DQDownload& download) {
    const QString path = download.intermediateDownloadTargetPath();
    const qint64 length = knownFile(download.userSettings()).length;
    const bool isWhole = length > 0 && bytesReceivedIn(path).value_or(0) >= length;
    return links::stringByDeletingLastPathComponent(isWhole ? download.finalDownloadTargetPath()
                                                            : path);
}

}  // namespace engine
