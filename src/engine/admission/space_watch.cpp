#include "engine/admission/space_watch.h"

#include <QStorageInfo>
#include <algorithm>
#include <cerrno>

#include "engine/record/download.h"
#include "engine/record/known_file.h"
#include "engine/record/user_settings.h"
#include "links/paths/path_components.h"
#include "platform/base/log.h"
#include "platform/base/run_loop.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

constexpr char operation[] = "resume when there is space";
constexpr platform::Seconds interval = 30;
/// Room enough not to be stopped again at once, but no more than the download still needs.
constexpr qint64 enoughSpace = qint64{64} << 20;

bool isLackOfSpace(const platform::Error& error) {
    const platform::Error* cause = error.underlying.get();
    return cause && (cause->is(platform::posixErrorDomain, ENOSPC) ||
                     cause->is(platform::posixErrorDomain, EDQUOT));
}

bool isSpaceBack(DQDownload& download) {
    const QString path = download.intermediateDownloadTargetPath();
    const QStorageInfo volume(links::stringByDeletingLastPathComponent(path));
    const qint64 length = knownFile(download.userSettings()).length;
    const qint64 missing = length > 0
                               ? std::max<qint64>(length - platform::fileSize(path).value_or(0), 1)
                               : enoughSpace;
    return volume.isValid() && volume.bytesAvailable() >= std::min(missing, enoughSpace);
}

void watch(DQDownload& download) {
    platform::mainRunLoop().performAfter(&download, operation, interval, [&download] {
        if (download.status() != DQDownloadStatusPaused || !download.isInterrupted())
            return;
        if (!isSpaceBack(download)) {
            watch(download);
            return;
        }
        platform::log(u"%1 goes on, there is room on the disk again"_s.arg(download.description()));
        download.addToQueue();
    });
}

}  // namespace

void resumeWhenThereIsSpace(DQDownload& download, const platform::Error& error) {
    if (isLackOfSpace(error))
        watch(download);
}

void cancelSpaceWatch(const DQDownload& download) {
    platform::mainRunLoop().cancel(&download, operation);
}

}  // namespace engine
