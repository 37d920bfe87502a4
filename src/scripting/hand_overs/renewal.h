#pragma once

#include <QString>
#include <optional>

#include "app/main_controller.h"
#include "platform/base/timer.h"

namespace scripting {

/// A download that a browser has just handed over, and that is held back.
struct Renewed {
    engine::DownloadPtr download;
    QString page, name;  ///< As handed over; may be empty.
    std::optional<qint64> size;
};

/// Starts it. If it is the same file from the same page as one that has failed, the user is asked
/// first, on a later turn of the loop, whether it is to go on with what that one has. The timers
/// go before the controller.
void offerRenewal(app::DQMainController& controller, const Renewed& renewed,
                  platform::Timers& timers);

}  // namespace scripting
