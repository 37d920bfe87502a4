#pragma once

#include <QWidget>

#include "app/rules/rule_book.h"

class QPushButton;
class QTreeWidget;

namespace ui {

class SettingsBinder;

/// The rules in the order in which they are tried, with all that can be done to them.
class RuleList final : public QWidget {
    Q_OBJECT

public:
    /// Both outlive the list.
    RuleList(app::RuleBook& rules, SettingsBinder& binder, QWidget* parent);

private:
    void makeTree();
    void makeButtons();
    void fill();
    void addRow(const QVariantMap& specialCase, bool isSelected);
    void updateButtons();

    [[nodiscard]] QList<QVariantMap> selectedSpecialCases() const;
    void define();
    void edit();
    void duplicate();
    void remove();

    app::RuleBook& rules_;
    SettingsBinder& binder_;
    QTreeWidget* tree_;
    QPushButton* edit_ = nullptr;
    QPushButton* duplicate_ = nullptr;
    QPushButton* remove_ = nullptr;
};

}  // namespace ui
