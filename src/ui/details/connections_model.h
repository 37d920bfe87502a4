#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "app/details/connections.h"

namespace ui {

/// The connections of a running download, a line each.
class ConnectionsModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    void setConnections(std::vector<app::Connection> connections);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    [[nodiscard]] QString text(int row, int column) const;

    std::vector<app::Connection> connections_;
};

}  // namespace ui
