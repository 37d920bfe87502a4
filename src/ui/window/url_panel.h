#pragma once

#include <QDialog>
#include <QTimer>
#include <optional>

#include "app/intake/script_arguments.h"
#include "app/intake/text_preview.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace app {
class DQMainController;
}
namespace platform {
class UserDefaults;
}

namespace ui {

class FolderSelector;

/// Takes any text with addresses in it, several lines of it, and says what it would come to. Not
/// modal: downloads go on, and other programs can be looked at for more.
class URLPanel final : public QDialog {
    Q_OBJECT

public:
    /// All of it outlives the panel.
    URLPanel(app::DQMainController& controller, QWidget& window);

    /// Comes to the front with this text in it. `note` says what is wrong with it; empty: nothing.
    /// A note goes with text that is still to be corrected, so that what is on the screen already
    /// stays above it.
    void openWithString(const QString& text, const QString& note = {});

private:
    void keepText(const QString& text);
    void letTextSurviveTheEnd();
    void makeText();
    QWidget* makeChoices();
    QWidget* makeButtons();
    void resetChoices();
    void look();
    void checksumDidChange();
    void updateAccept();
    [[nodiscard]] app::ScriptArguments arguments() const;
    [[nodiscard]] QString textToOpen() const;
    void openURLOK();

    app::DQMainController& controller_;
    platform::UserDefaults& defaults_;
    QPlainTextEdit* openURLTextView;
    QLabel* note_;
    QLabel* preview_;
    FolderSelector* folder_;
    QCheckBox* startsAtOnce_;
    QLineEdit* checksum_;
    QLabel* checksumNote_;
    QPushButton* accept_ = nullptr;
    app::TextPreview found_;
    bool isEnding_ = false;  ///< Closed by the program's end and not by the user.
    QTimer look_;
};

}  // namespace ui
