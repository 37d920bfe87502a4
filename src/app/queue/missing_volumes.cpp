#include "app/queue/missing_volumes.h"

#include "engine/lifecycle/download.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/files/files.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

QString MissingVolumes::note(const std::shared_ptr<engine::DQDownload>& download) {
    const QString volume = platform::volumePath(download->intermediateDownloadTargetPath());
    platform::log(u"%1 waits for the volume %2"_s.arg(download->description(), volume),
                  platform::LogLevel::Warning);
    auto& waiting = waiting_[volume];
    std::erase_if(waiting, [&](const auto& known) { return known.lock() == download; });
    waiting.push_back(download);
    return links::filledFormat(
        links::localized(
            "%@ cannot go on: what has come of it lies on %@, which is not available."),
        {download->displayName(), volume});
}

MissingVolumes::Downloads MissingVolumes::takeReturned() {
    Downloads returned;
    for (auto volume = waiting_.begin(); volume != waiting_.end();) {
        if (!isThere_(volume.key())) {
            ++volume;
            continue;
        }
        for (const auto& waiting : volume.value()) {
            const auto download = waiting.lock();
            if (download && !download->isBeingRemoved() &&
                download->status() == engine::DQDownloadStatusPaused) {
                returned.push_back(download);
            }
        }
        platform::log(u"the volume %1 is back"_s.arg(volume.key()));
        volume = waiting_.erase(volume);
    }
    return returned;
}

}  // namespace app
