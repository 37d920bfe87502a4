#include "ui/list/download_list_model.h"

#include <algorithm>

#include "ui/list/row_texts.h"

namespace ui {

DownloadListModel::DownloadListModel(const app::StatusTexts& texts, QObject* parent)
    : QAbstractListModel(parent), texts_(texts), rows_(std::make_shared<const Rows>()) {}

void DownloadListModel::reload(std::shared_ptr<const Rows> rows) {
    const Rows& before = *rows_;
    const Rows& after = *rows;
    const auto shorter = std::min(before.size(), after.size());
    std::size_t head = 0;
    while (head < shorter && before[head] == after[head]) {
        ++head;
    }
    std::size_t tail = 0;
    while (tail < shorter - head &&
           before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) {
        ++tail;
    }
    const auto gone = static_cast<int>(before.size() - head - tail);
    const auto come = static_cast<int>(after.size() - head - tail);
    const auto first = static_cast<int>(head);

    // Views look at the rows between the two steps, so there must be an array of that moment.
    if (gone > 0) {
        beginRemoveRows({}, first, first + gone - 1);
        auto rest = std::make_shared<Rows>(before.begin(), before.begin() + first);
        rest->insert(rest->end(), before.end() - static_cast<std::ptrdiff_t>(tail), before.end());
        rows_ = rest;
        endRemoveRows();
    }
    if (come > 0) {
        beginInsertRows({}, first, first + come - 1);
        rows_ = std::move(rows);
        endInsertRows();
    }
}

engine::DownloadPtr DownloadListModel::download(int row) const {
    if (row < 0 || row >= rowCount()) {
        return nullptr;
    }
    return (*rows_)[static_cast<std::size_t>(row)];
}

int DownloadListModel::row(const engine::DQDownload& download) const {
    const auto found = std::find_if(rows_->begin(), rows_->end(),
                                    [&](const auto& other) { return other.get() == &download; });
    return found == rows_->end() ? -1 : static_cast<int>(found - rows_->begin());
}

void DownloadListModel::redrawRow(int row) {
    if (row >= 0 && row < rowCount()) {
        Q_EMIT dataChanged(index(row), index(row));
    }
}

int DownloadListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_->size());
}

QVariant DownloadListModel::data(const QModelIndex& index, int role) const {
    const engine::DownloadPtr download = this->download(index.row());
    if (!download) {
        return {};
    }
    switch (role) {
        case Qt::DisplayRole:
            return download->displayName();
        case Qt::AccessibleTextRole:
            return accessibleRowText(texts_, *download);
        case Qt::ToolTipRole:
            return rowToolTip(texts_, *download);
        default:
            return {};
    }
}

Qt::ItemFlags DownloadListModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) {
        return Qt::ItemIsDropEnabled;
    }
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled |
           Qt::ItemNeverHasChildren;
}

}  // namespace ui
