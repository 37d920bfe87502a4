#pragma once

namespace engine {
class DQDownload;
}

namespace app {

/// The list in which a row vanishes. Main thread.
class VanishView {
public:
    virtual ~VanishView() = default;

    [[nodiscard]] virtual bool showsDownload(const engine::DQDownload& download) const = 0;
    /// Draws a row that is fading.
    virtual void redrawDownload(engine::DQDownload& download) = 0;
    /// Takes a row that is collapsing along with the others; calls `RowVanishing::performStep` for
    /// it again.
    virtual void performVanishStepForObject(engine::DQDownload& download) = 0;
};

}  // namespace app
