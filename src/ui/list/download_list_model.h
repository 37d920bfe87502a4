#pragma once

#include <QAbstractListModel>
#include <memory>
#include <vector>

#include "engine/lifecycle/download.h"

namespace app {
class StatusTexts;
}

namespace ui {

/// The rows of the list: what the controller shows, kept as of the last reload.
class DownloadListModel final : public QAbstractListModel {
    Q_OBJECT

public:
    using Rows = std::vector<engine::DownloadPtr>;

    explicit DownloadListModel(const app::StatusTexts& texts, QObject* parent = nullptr);

    /// Takes the new rows over, touching only the stretch that differs.
    void reload(std::shared_ptr<const Rows> rows);

    /// Null: no such row.
    [[nodiscard]] engine::DownloadPtr download(int row) const;
    [[nodiscard]] int row(const engine::DQDownload& download) const;
    void redrawRow(int row);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    const app::StatusTexts& texts_;
    std::shared_ptr<const Rows> rows_;
};

}  // namespace ui
