#include "app/queue/missing_volume_alert_controller.h"

#include <utility>

#include "app/alert_lines.h"
#include "engine/lifecycle/download.h"
#include "links/text/localization.h"

namespace app {
namespace {

/// Time for the rest of a burst.
constexpr platform::Seconds delay = 1.0;

}  // namespace

DQMissingVolumeAlertController::DQMissingVolumeAlertController(platform::RunLoop& loop, Show show)
    : show_(std::move(show)), showing_(loop) {}

void DQMissingVolumeAlertController::prepareAlertForDownload(const engine::DQDownload& download) {
    const QString name = download.displayName();
    _missingVolumeDownloads.append(name.isEmpty() ? links::localized("(Unknown)") : name);
    showing_.start(delay, [this] { showAlert(); });
}

void DQMissingVolumeAlertController::showAlert() {
    const QStringList names = std::exchange(_missingVolumeDownloads, {});
    show_(links::filledFormat(
        links::localized("The partial download files for the following downloads are on volumes "
                         "that are currently not available:\n\n%@"),
        {alertLines(names)}));
}

}  // namespace app
