#include "ui/log/log_model.h"

#include <algorithm>
#include <utility>

namespace ui {

using diagnostics::LogRow;
using diagnostics::LogRowText;

namespace {

bool areSame(const LogRow& a, const LogRow& b) {
    return a.kind == b.kind && a.entry == b.entry;
}

}  // namespace

void LogModel::setRows(std::vector<LogRow> rows) {
    const auto [oldBegin, newBegin] =
        std::mismatch(rows_.begin(), rows_.end(), rows.begin(), rows.end(), areSame);
    const auto [oldEnd, newEnd] =
        std::mismatch(rows_.rbegin(), std::make_reverse_iterator(oldBegin), rows.rbegin(),
                      std::make_reverse_iterator(newBegin), areSame);
    const int first = static_cast<int>(oldBegin - rows_.begin());
    const int removed = static_cast<int>(oldEnd.base() - oldBegin);
    const int added = static_cast<int>(newEnd.base() - newBegin);
    if (removed > 0) {
        beginRemoveRows({}, first + 1, first + removed);
        rows_.erase(oldBegin, oldEnd.base());
        endRemoveRows();
    }
    if (added > 0)
        beginInsertRows({}, first + 1, first + added);
    rows_ = std::move(rows);
    if (added > 0)
        endInsertRows();
    // How many a row stands for may have grown.
    if (first > 0)
        Q_EMIT dataChanged(index(first), index(first));
}

void LogModel::setWording(const diagnostics::LogWording& wording) {
    wording_ = wording;
    Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

void LogModel::setHeader(const QString& header) {
    header_ = header;
    Q_EMIT dataChanged(index(0), index(0));
}

int LogModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size()) + 1;
}

const LogRow& LogModel::rowAt(int row) const {
    return rows_[static_cast<std::size_t>(row - 1)];
}

LogRowText LogModel::textOf(int row) const {
    if (row == 0)
        return {header_, {}, {}};
    if (rowAt(row).kind == LogRow::Kind::Marker)
        return {diagnostics::logMarkerText(), {}, {}};
    return diagnostics::logRowText(rowAt(row), wording_);
}

QVariant LogModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    switch (role) {
        case Qt::DisplayRole:
            return textOf(index.row()).whole();
        case MetaRole:
            return textOf(index.row()).meta;
        case MessageRole:
            return textOf(index.row()).message;
        case CountRole:
            return textOf(index.row()).count;
        case ProblemRole:
            return index.row() > 0 && rowAt(index.row()).entry &&
                   rowAt(index.row()).entry->isProblem();
        default:
            return {};
    }
}

}  // namespace ui
