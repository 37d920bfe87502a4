#pragma once

#include <QDialog>

class QPlainTextEdit;

namespace ui {

/// Takes any text with addresses in it, several lines of it.
class URLPanel final : public QDialog {
    Q_OBJECT

public:
    explicit URLPanel(QWidget* parent, const QString& text);

    [[nodiscard]] QString text() const;

private:
    QPlainTextEdit* openURLTextView;
};

}  // namespace ui
