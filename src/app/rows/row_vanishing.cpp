#include "app/rows/row_vanishing.h"

#include <utility>

#include "app/rows/vanishing.h"
#include "engine/lifecycle/download.h"
#include "engine/settings.h"
#include "platform/base/user_defaults.h"

namespace app {

namespace {

constexpr int stepsInAll = 17;
constexpr int firstFadingStep = 16;
constexpr int firstCollapsingStep = 8;
constexpr int lastStep = 3;
constexpr platform::Seconds stepInterval = 0.015;
constexpr double notVanishing = -1;

}  // namespace

RowVanishing::Row::Row(platform::RunLoop& loop, std::shared_ptr<VanishView> shownIn)
    : view(std::move(shownIn)), countdown(stepsInAll), timer(loop) {}

RowVanishing::RowVanishing(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

RowVanishing::~RowVanishing() = default;

void RowVanishing::vanish(engine::DQDownload& download, const std::shared_ptr<VanishView>& view,
                          platform::Seconds delay) {
    if (!view || !surroundings_.defaults.get(engine::settings::uselessAnimations)) {
        surroundings_.remove(download);
        return;
    }
    rows_.erase(&download);
    Row& row = rows_.try_emplace(&download, surroundings_.loop, view).first->second;
    performStepAfter(download, row, delay);
}

void RowVanishing::performStepAfter(engine::DQDownload& download, Row& row,
                                    platform::Seconds delay) {
    row.timer.start(delay, [this, &download] { performStep(download); });
}

bool RowVanishing::isVanishing(const engine::DQDownload& download) const {
    return rows_.contains(&download);
}

/// A row that the view does not show any more stays where it is, marked as vanishing.
void RowVanishing::performStep(engine::DQDownload& download) {
    const auto found = rows_.find(&download);
    if (found == rows_.end()) {
        return;
    }
    const auto keep = download.shared_from_this();
    Row& row = found->second;
    const std::shared_ptr<VanishView> view = row.view;
    if (row.countdown-- < lastStep) {
        surroundings_.remove(download);
    } else if (view->showsDownload(download)) {
        if (heightFraction(download) > 0) {
            view->performVanishStepForObject(download);
        } else {
            view->redrawDownload(download);
            performStepAfter(download, row, stepInterval);
        }
    }
}

double RowVanishing::fraction(const engine::DQDownload& download) const {
    constexpr double fadingSteps = firstFadingStep - firstCollapsingStep;
    const auto found = rows_.find(&download);
    return found == rows_.end() ? notVanishing
                                : (firstFadingStep - found->second.countdown) / fadingSteps;
}

double RowVanishing::heightFraction(const engine::DQDownload& download) const {
    const auto found = rows_.find(&download);
    return found == rows_.end() || found->second.countdown > firstCollapsingStep
               ? notVanishing
               : static_cast<double>(found->second.countdown) / firstCollapsingStep;
}

}  // namespace app
