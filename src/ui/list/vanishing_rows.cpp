#include "ui/list/vanishing_rows.h"

#include <algorithm>
#include <chrono>

#include "ui/list/download_list.h"
#include "ui/list/download_list_model.h"

namespace ui {
namespace {

constexpr std::chrono::milliseconds stepInterval{15};

}  // namespace

VanishingRows::VanishingRows(DQDownloadList& list, app::RowVanishing& vanishing)
    : list_(list), vanishing_(vanishing) {
    steps_.setSingleShot(true);
    nextSteps_.setSingleShot(true);
    connect(&steps_, &QTimer::timeout, this, &VanishingRows::performVanishSteps);
    connect(&nextSteps_, &QTimer::timeout, this, &VanishingRows::performNextVanishSteps);
}

bool VanishingRows::showsDownload(const engine::DQDownload& download) const {
    return list_.rows().row(download) >= 0;
}

void VanishingRows::redrawDownload(engine::DQDownload& download) {
    list_.rows().redrawRow(list_.rows().row(download));
}

void VanishingRows::performVanishStepForObject(engine::DQDownload& download) {
    const bool known =
        std::any_of(_vanishingObjects.begin(), _vanishingObjects.end(),
                    [&](const auto& other) { return other.lock().get() == &download; });
    if (!known) {
        _vanishingObjects.push_back(download.weak_from_this());
    }
    steps_.start(0);
}

void VanishingRows::updateRows() {
    rows_.clear();
    std::erase_if(_vanishingObjects, [&](const auto& weak) {
        const engine::DownloadPtr download = weak.lock();
        const int row = download ? list_.rows().row(*download) : -1;
        if (row < 0) {
            return true;
        }
        const double fraction = vanishing_.heightFraction(*download);
        if (fraction > 0) {
            rows_.push_back({row, static_cast<int>(list_.rowHeight() * fraction)});
        }
        return false;
    });
    std::sort(rows_.begin(), rows_.end(),
              [](const CollapsingRow& a, const CollapsingRow& b) { return a.row < b.row; });
}

void VanishingRows::performVanishSteps() {
    updateRows();
    if (_vanishingObjects.empty()) {
        return;
    }
    Q_EMIT heightsChanged();
    nextSteps_.start(stepInterval);
}

void VanishingRows::performNextVanishSteps() {
    const auto objects = _vanishingObjects;
    for (const auto& weak : objects) {
        if (const engine::DownloadPtr download = weak.lock()) {
            vanishing_.performStep(*download);
        }
    }
}

}  // namespace ui
