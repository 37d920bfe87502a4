#pragma once

#include <QStringList>
#include <functional>

#include "platform/base/timer.h"

namespace engine {
class DQDownload;
}

namespace app {

/// Tells of downloads that cannot go on because the volume of their partial file is away: all that
/// turn up within a second at once, however many they are. Main thread.
class DQMissingVolumeAlertController {
public:
    /// What the alert says below "Cannot resume downloading", in the user's language.
    using Show = std::function<void(const QString& text)>;
    DQMissingVolumeAlertController(platform::RunLoop& loop, Show show);

    void prepareAlertForDownload(const engine::DQDownload& download);

private:
    void showAlert();

    const Show show_;
    QStringList _missingVolumeDownloads;  ///< By the names that rows show.
    platform::Timer showing_;
};

}  // namespace app
