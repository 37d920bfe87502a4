#pragma once

#include <QWidget>

class QAbstractItemView;
class QLabel;
class QLineEdit;

namespace ui {

/// Looks for a text in the lines of a list, forwards and backwards, round and round.
class LogFindBar final : public QWidget {
    Q_OBJECT

public:
    /// The list outlives the bar.
    LogFindBar(QAbstractItemView& list, QWidget* parent);

    /// Shows the bar and takes the keyboard.
    void open();
    void close();
    void find(bool backwards);

private:
    [[nodiscard]] bool isMatch(int row) const;

    QAbstractItemView& list_;
    QLineEdit* text_;
    QLabel* result_;
};

}  // namespace ui
