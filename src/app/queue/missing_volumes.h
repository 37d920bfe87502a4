#pragma once

#include <QMap>
#include <QStringList>
#include <functional>

#include "platform/base/timer.h"

namespace engine {
class DQDownload;
}

namespace app {

/// Tells of downloads that cannot go on because the volume of their partial file is away: one
/// sentence for each volume, however many wait for it. Main thread.
class MissingVolumes {
public:
    /// `tell` is given the sentences of one turn of the loop.
    MissingVolumes(platform::RunLoop& loop, std::function<void(const QStringList&)> tell);

    void note(const engine::DQDownload& download);

private:
    void tellAll();

    std::function<void(const QStringList&)> tell_;
    QMap<QString, QStringList> waiting_;  ///< By volume, the names that rows show.
    platform::Timer telling_;
};

}  // namespace app
