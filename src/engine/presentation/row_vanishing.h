#pragma once

#include <memory>

#include "platform/base/clock.h"

namespace engine {

class DQDownload;
class VanishView;

/// The steps in which a finished row fades, collapses and goes.
class RowVanishing {
public:
    explicit RowVanishing(DQDownload& download) : download_(download) {}

    void vanishInView(const std::shared_ptr<VanishView>& view, platform::Seconds delay);
    [[nodiscard]] bool isVanishing() const { return _vanishView != nullptr; }
    void performVanishStep();
    [[nodiscard]] double vanishFraction() const;
    [[nodiscard]] double vanishRowHeightFraction() const;

private:
    void performVanishStepAfter(platform::Seconds delay);

    DQDownload& download_;
    std::shared_ptr<VanishView> _vanishView;
    int _vanishCountdown = 0;
};

}  // namespace engine
