#include "app/rows/running_figures.h"

#include <algorithm>

#include "engine/lifecycle/download.h"
#include "engine/record/user_settings.h"

namespace app {

double RunningFigures::bytesLeft() const {
    return static_cast<double>(std::max<qint64>(figures.expected - figures.total(), 0));
}

RunningFigures runningFigures(const engine::DQDownload& download, platform::Seconds now) {
    RunningFigures running{download.figures(), std::nullopt};
    if (running.figures.downloaded > 0)
        running.span = download.speed(now);
    return running;
}

qint64 heldBytes(const engine::DQDownload& download) {
    if (download.status() == engine::DQDownloadStatusDownloading)
        return download.figures().total();
    return download.holdsPartialData()
               ? download.userSettings().value(engine::keys::keptBytes).toLongLong()
               : 0;
}

qint64 shownRate(double bytesPerSecond) {
    constexpr qint64 kilo = 1000;
    constexpr qint64 mega = 1000 * kilo;
    const auto rate = static_cast<qint64>(bytesPerSecond);
    return rate > kilo && rate < mega ? rate / kilo * kilo : rate;
}

}  // namespace app
