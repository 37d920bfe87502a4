#include "engine/presentation/row_vanishing.h"

#include "engine/admission/download_manager.h"
#include "engine/presentation/vanishing.h"
#include "engine/record/download.h"
#include "engine/settings.h"
#include "platform/base/run_loop.h"

namespace engine {
namespace {

constexpr int stepsInAll = 17;
constexpr int firstFadingStep = 16;
constexpr int firstCollapsingStep = 8;
constexpr int lastStep = 3;
constexpr platform::Seconds stepInterval = 0.015;
constexpr double notVanishing = -1;
constexpr char stepOperation[] = "performVanishStep";

}  // namespace

void RowVanishing::vanishInView(const std::shared_ptr<VanishView>& view, platform::Seconds delay) {
    if (!view || !platform::standardDefaults().get(settings::uselessAnimations)) {
        mainController().removeDownload(download_);
        return;
    }
    _vanishView = view;
    _vanishCountdown = stepsInAll;
    platform::mainRunLoop().cancel(&download_, stepOperation);
    performVanishStepAfter(delay);
}

void RowVanishing::performVanishStepAfter(platform::Seconds delay) {
    platform::mainRunLoop().performAfter(&download_, stepOperation, delay,
                                         [this] { performVanishStep(); });
}

/// A row that the view does not show any more stays where it is, marked as vanishing.
void RowVanishing::performVanishStep() {
    const auto keep = download_.shared_from_this();
    const int before = _vanishCountdown--;
    if (before < lastStep) {
        mainController().removeDownload(download_);
    } else if (_vanishView->showsDownload(download_)) {
        if (vanishRowHeightFraction() > 0) {
            _vanishView->performVanishStepForObject(download_);
        } else {
            _vanishView->redrawDownload(download_);
            performVanishStepAfter(stepInterval);
        }
    }
}

double RowVanishing::vanishFraction() const {
    constexpr double fadingSteps = firstFadingStep - firstCollapsingStep;
    return isVanishing() ? (firstFadingStep - _vanishCountdown) / fadingSteps : notVanishing;
}

double RowVanishing::vanishRowHeightFraction() const {
    return isVanishing() && _vanishCountdown <= firstCollapsingStep
               ? static_cast<double>(_vanishCountdown) / firstCollapsingStep
               : notVanishing;
}

}  // namespace engine
