#pragma once

#include <QString>
#include <memory>
#include <vector>

class QWidget;

namespace app {
class DQMainController;
struct RefusedText;
}  // namespace app

namespace ui {

class ApproachingEnd;
class URLPanel;

/// The ways in which the user hands addresses and files over by hand.
class AddressEntry {
public:
    /// All of it outlives it.
    AddressEntry(app::DQMainController& controller, QWidget& window, const ApproachingEnd& end);
    ~AddressEntry();

    /// The panel, with the addresses that the clipboard holds, if any.
    void openURL();
    /// What was in the panel when the program ended stands before the text.
    void openURLPanelWithString(const QString& text, const QString& note = {});
    /// The panel with what it held when the program ended, if anything.
    void openUnfinished();
    /// Takes in what the clipboard holds, or shows it in the panel to be corrected.
    void openURLFromPasteboard();
    void openFile();
    void openFolder();

private:
    [[nodiscard]] URLPanel& panel();
    void openPaths(const QStringList& paths);
    void showForCorrection(const std::vector<app::RefusedText>& refused);

    app::DQMainController& controller_;
    QWidget& window_;
    const ApproachingEnd& end_;
    std::unique_ptr<URLPanel> openURLPanel;
};

}  // namespace ui
