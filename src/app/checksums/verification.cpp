#include "app/checksums/verification.h"

#include "app/main_controller.h"

namespace app {

bool canExpectChecksum(const engine::DQDownload& download) {
    return !download.isBeingRemoved() && !download.isVerifying() &&
           (download.status() != engine::DQDownloadStatusDone || !download.path().isEmpty());
}

void expectChecksum(DQMainController& controller, const engine::DownloadPtr& download,
                    const std::optional<engine::Checksum>& checksum) {
    const bool hasFailed =
        download->status() == engine::DQDownloadStatusAborted && download->isWrongFile();
    download->expectChecksum(
        checksum, [&controller, kept = download] { controller.noteVerification(*kept); });
    if (hasFailed)
        controller.retry({download});
    else if (download->status() != engine::DQDownloadStatusDone)
        controller.whenSaved([](bool) {});
}

}  // namespace app
