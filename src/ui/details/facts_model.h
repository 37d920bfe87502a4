#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "app/details/download_facts.h"

namespace ui {

/// What is known of a download, a line each: what it is, and how it stands.
class FactsModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    /// What has not changed is not drawn anew, and stays selected.
    void setFacts(std::vector<app::Fact> facts);
    [[nodiscard]] const std::vector<app::Fact>& facts() const { return facts_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    std::vector<app::Fact> facts_;
};

/// `text` with places where a long address or checksum may go on in the next line.
[[nodiscard]] QString breakable(const QString& text);

}  // namespace ui
