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

class URLPanel;

/// The ways in which the user hands addresses and files over by hand.
class AddressEntry {
public:
    /// Both outlive it.
    AddressEntry(app::DQMainController& controller, QWidget& window);
    ~AddressEntry();

    /// The panel, with the addresses that the clipboard holds, if any.
    void openURL();
    void openURLPanelWithString(const QString& text, const QString& note = {});
    /// The panel with what it held when the program ended, if anything.
    void openUnfinished();
    /// Takes in what the clipboard holds, or shows it in the panel to be corrected.
    void openURLFromPasteboard();
    void openFile();
    void openFolder();

private:
    void openPaths(const QStringList& paths);
    void showForCorrection(const std::vector<app::RefusedText>& refused);

    app::DQMainController& controller_;
    QWidget& window_;
    std::unique_ptr<URLPanel> openURLPanel;
};

}  // namespace ui
