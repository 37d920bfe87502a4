#pragma once

#include <optional>

#include "engine/transfer/progress_figures.h"

namespace engine {
class DQDownload;
}

namespace app {

/// How far a running download has come, and what came lately; no span: too little has come yet.
struct RunningFigures {
    engine::OverallFigures figures;
    std::optional<engine::SpeedMeter::Span> span;

    /// Bytes that are missing; 0: unknown, or none.
    [[nodiscard]] double bytesLeft() const;
};

/// `now` on the scale that never jumps. Main thread.
[[nodiscard]] RunningFigures runningFigures(const engine::DQDownload& download,
                                            platform::Seconds now);
/// Of its file on disk, as far as is known without looking: what goes if it is removed.
[[nodiscard]] qint64 heldBytes(const engine::DQDownload& download);
/// A rate in bytes for a second as it is shown: of a middling one only the leading digits, since
/// the others change at every look.
[[nodiscard]] qint64 shownRate(double bytesPerSecond);

}  // namespace app
