#pragma once

#include <QDialog>

class QListWidget;
class QPushButton;

namespace ui {

class ToolbarLayout;

/// Lets the user arrange the toolbar; every step counts at once.
class ToolbarEditor final : public QDialog {
    Q_OBJECT

public:
    /// The layout outlives the editor.
    ToolbarEditor(ToolbarLayout& layout, QWidget* parent);

Q_SIGNALS:
    void changed();

private:
    void fill(const QStringList& items, int current);
    [[nodiscard]] QStringList shownItems() const;
    void store(const QStringList& items, int current);
    void add();
    void remove();
    void move(int step);
    void updateButtons();

    ToolbarLayout& layout_;
    QListWidget* available_ = nullptr;
    QListWidget* shown_ = nullptr;
    QPushButton* add_ = nullptr;
    QPushButton* remove_ = nullptr;
    QPushButton* up_ = nullptr;
    QPushButton* down_ = nullptr;
};

}  // namespace ui
