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

class ApproachingEnd;
class FolderSelector;

/// Takes any text with addresses in it, several lines of it, and says what it would come to. Not
/// modal: downloads go on, and other programs can be looked at for more.
class URLPanel final : public QDialog {
    Q_OBJECT

public:
    /// All of it outlives the panel.
    URLPanel(app::DQMainController& controller, QWidget& window, const ApproachingEnd& end);

    /// Comes to the front with this text in it, below what is being entered there already. `note`
    /// says what is wrong with it; empty: nothing, it is only a proposal.
    void openWithString(const QString& text, const QString& note = {});

private:
    void keepText(const QString& text);
    void letTextSurviveTheEnd(const ApproachingEnd& end);
    void makeText();
    void addText(const QString& text);
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
    QTimer look_;
};

}  // namespace ui
