#pragma once

#include <QAbstractListModel>
#include <vector>

#include "diagnostics/log_rows.h"

namespace ui {

/// The lines of the log window. The first tells how far back it goes; a line of text is what
/// assistive technology and the clipboard get.
class LogModel final : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        MetaRole = Qt::UserRole,  ///< When and who, the part before the message.
        MessageRole,
        CountRole,
        ProblemRole,  ///< Whether it is an error.
    };

    using QAbstractListModel::QAbstractListModel;

    /// Tells views what came and went, so that they keep their place and selection.
    void setRows(std::vector<diagnostics::LogRow> rows);
    void setWording(const diagnostics::LogWording& wording);
    /// Empty: there is no first line.
    void setHeader(const QString& header);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    [[nodiscard]] const diagnostics::LogRow& rowAt(int row) const;
    [[nodiscard]] diagnostics::LogRowText textOf(int row) const;

    QString header_;
    diagnostics::LogWording wording_;
    std::vector<diagnostics::LogRow> rows_;
};

}  // namespace ui
