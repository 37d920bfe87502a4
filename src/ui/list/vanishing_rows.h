#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

#include "app/rows/row_vanishing.h"
#include "app/rows/vanishing.h"
#include "engine/lifecycle/download.h"

namespace ui {

class DQDownloadList;

/// Lets rows fade by themselves and collapse together, one step for all of them at a time.
class VanishingRows final : public QObject, public app::VanishView {
    Q_OBJECT

public:
    VanishingRows(DQDownloadList& list, app::RowVanishing& vanishing);

    [[nodiscard]] bool showsDownload(const engine::DQDownload& download) const override;
    void redrawDownload(engine::DQDownload& download) override;
    void performVanishStepForObject(engine::DQDownload& download) override;

    struct CollapsingRow {
        int row;
        int height;
    };
    /// In order of their rows.
    [[nodiscard]] const std::vector<CollapsingRow>& collapsingRows() const { return rows_; }
    /// Looks up anew where the collapsing downloads stand; after every reload.
    void updateRows();

Q_SIGNALS:
    void heightsChanged();

private:
    void performVanishSteps();
    void performNextVanishSteps();

    DQDownloadList& list_;
    app::RowVanishing& vanishing_;
    std::vector<std::weak_ptr<engine::DQDownload>> _vanishingObjects;
    std::vector<CollapsingRow> rows_;
    QTimer steps_, nextSteps_;
};

}  // namespace ui
