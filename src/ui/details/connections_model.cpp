#include "ui/details/connections_model.h"

#include "app/rows/running_figures.h"
#include "links/format/byte_counts.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

namespace {

enum Column { RangeColumn, ArrivedColumn, SpeedColumn, NumberOfColumns };

QString rangeText(const app::Connection& connection) {
    if (connection.end < 0)
        return connection.start > 0
                   ? translated("from %1").arg(links::fileSizeText(connection.start))
                   : translated("the whole file");
    const auto past = static_cast<quint64>(connection.end) + 1;
    const QString start = connection.start > 0 ? links::partialFileSizeDescriptionWithBytesCount(
                                                     static_cast<quint64>(connection.start), past)
                                               : u"0"_s;
    return start + u" – "_s + links::fileSizeDescriptionWithBytesCount(past);
}

QString speedText(const app::Connection& connection) {
    switch (connection.state) {
        case app::Connection::State::Waiting:
            return translated("Waiting");
        case app::Connection::State::Done:
            return translated("Done");
        case app::Connection::State::Running:
            break;
    }
    if (connection.perSecond < 1)
        return u"0"_s;
    return translated("%@/s").replace(
        u"%@"_s, links::fileSizeText(app::shownRate(static_cast<double>(connection.perSecond))));
}

}  // namespace

void ConnectionsModel::setConnections(std::vector<app::Connection> connections) {
    if (connections.size() != connections_.size()) {
        beginResetModel();
        connections_ = std::move(connections);
        endResetModel();
        return;
    }
    connections_ = std::move(connections);
    if (!connections_.empty())
        Q_EMIT dataChanged(index(0, RangeColumn), index(rowCount() - 1, SpeedColumn));
}

int ConnectionsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(connections_.size());
}

int ConnectionsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : NumberOfColumns;
}

QString ConnectionsModel::text(int row, int column) const {
    const app::Connection& connection = connections_[static_cast<std::size_t>(row)];
    switch (column) {
        case RangeColumn:
            return rangeText(connection);
        case ArrivedColumn:
            return connection.end < 0 ? links::fileSizeText(connection.arrived)
                                      : u"%1 · %2 %"_s.arg(links::fileSizeText(connection.arrived))
                                            .arg(static_cast<int>(connection.fraction() * 100));
        default:
            return speedText(connection);
    }
}

QVariant ConnectionsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role == Qt::DisplayRole)
        return text(index.row(), index.column());
    if (role == Qt::AccessibleTextRole)
        return headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString() + u": "_s +
               text(index.row(), index.column());
    return {};
}

QVariant ConnectionsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignLeading | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    switch (section) {
        case RangeColumn:
            return translated("Part");
        case ArrivedColumn:
            return translated("Arrived");
        default:
            return translated("Speed");
    }
}

}  // namespace ui
