#pragma once

#include <QMap>
#include <QStringList>
#include <functional>

#include "platform/base/timer.h"

namespace engine {
class DQDownload;
}

namespace app {

/// Tells of downloads that cannot go on because the volume of their partial file is away: at once
/// of each, for whoever writes lines, and at the next turn of the loop with one sentence for each
/// volume, however many wait for it. Main thread.
class MissingVolumes {
public:
    using TellOne = std::function<void(const QString& sentence)>;
    using TellAll = std::function<void(const QStringList& sentences)>;
    MissingVolumes(platform::RunLoop& loop, TellOne tellOne, TellAll tellAll);

    void note(const engine::DQDownload& download);

private:
    void tellAll();

    const TellOne tellOne_;
    const TellAll tellAll_;
    QMap<QString, QStringList> waiting_;  ///< By volume, the names that rows show.
    platform::Timer telling_;
};

}  // namespace app
