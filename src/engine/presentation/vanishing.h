#pragma once

#include "platform/base/clock.h"

namespace engine {

class DQDownload;

/// The list in which a row vanishes. Main thread.
class VanishView {
public:
    virtual ~VanishView() = default;

    [[nodiscard]] virtual bool showsDownload(const DQDownload& download) const = 0;
    /// Draws a row that is fading.
    virtual void redrawDownload(DQDownload& download) = 0;
    /// Takes a row that is collapsing along with the others; calls its `performVanishStep` again.
    virtual void performVanishStepForObject(DQDownload& download) = 0;
};

}  // namespace engine
