#pragma once

#include <QDialog>
#include <functional>

class QLabel;
class QPlainTextEdit;

namespace ui {

/// Takes any text with addresses in it, several lines of it. Not modal: downloads go on, and other
/// programs can be looked at for more.
class URLPanel final : public QDialog {
    Q_OBJECT

public:
    /// `open` is called with what was entered.
    URLPanel(QWidget& window, std::function<void(const QString&)> open);

    /// Comes to the front with this text in it. `note` says what is wrong with it; empty: nothing.
    /// A note goes with text that is still to be corrected, so that what is on the screen already
    /// stays above it.
    void openWithString(const QString& text, const QString& note = {});

private:
    void openURLOK();

    QPlainTextEdit* openURLTextView;
    QLabel* note_;
    std::function<void(const QString&)> open_;
};

}  // namespace ui
