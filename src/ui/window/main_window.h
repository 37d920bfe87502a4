#pragma once

#include <QElapsedTimer>
#include <QMainWindow>
#include <QTimer>
#include <memory>
#include <vector>

#include "platform/base/observation.h"

class QLabel;
class QPushButton;

namespace app {
class Commands;
class DQMainController;
}  // namespace app
namespace engine {
class DQDownload;
}

namespace ui {

class AddressEntry;
class ApproachingEnd;
class ClipboardWatch;
class CommandActions;
class DQDownloadList;
class DetailsSplitter;
class ListDragging;
class MainMenu;
class MainToolbar;
class NoticeBars;
class RubberWindow;
class ScopeBar;
class WindowFrame;

/// The window with the list, its menus and its toolbar.
class MainWindow final : public QMainWindow {
    Q_OBJECT

public:
    /// Provides its own commands; they outlive the window.
    explicit MainWindow(app::Commands& commands);
    ~MainWindow() override;

    [[nodiscard]] DQDownloadList& list() const { return *downloadList; }
    [[nodiscard]] MainToolbar& toolbar() const { return *toolbar_; }
    [[nodiscard]] NoticeBars& notices() const { return *notices_; }
    [[nodiscard]] MainMenu& mainMenu() const { return *menu_; }
    [[nodiscard]] WindowFrame& frame() const { return *frame_; }

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    /// Of the first window.
    [[nodiscard]] QSize usualSize() const;
    void makeContents();
    void makeStatusLine();
    void connectList();
    void setFilterText(const QString& text);
    void updateStatus();
    void showAdded(const std::vector<std::shared_ptr<engine::DQDownload>>& downloads);
    [[nodiscard]] bool isHeldOpen();
    void offerUndo(const QString& removed);
    void bringIntoSight(const std::vector<std::shared_ptr<engine::DQDownload>>& downloads);
    void showKnown(const std::vector<std::shared_ptr<engine::DQDownload>>& downloads);
    void showContextMenu(int row, const QPoint& position);

    app::Commands& commands_;
    app::DQMainController& controller_;
    DQDownloadList* downloadList;
    DetailsSplitter* details_ = nullptr;
    ScopeBar* toolbarFilterScopeBar = nullptr;
    NoticeBars* notices_ = nullptr;
    NoticeBars* removals_ = nullptr;
    MainToolbar* toolbar_ = nullptr;
    QLabel* statusField = nullptr;
    QLabel* totalsField = nullptr;
    QPushButton* clearButton = nullptr;
    std::unique_ptr<CommandActions> actions_;
    std::unique_ptr<MainMenu> menu_;
    std::unique_ptr<ApproachingEnd> end_;
    std::unique_ptr<AddressEntry> entry_;
    std::unique_ptr<ListDragging> dragging_;
    std::unique_ptr<WindowFrame> frame_;
    std::unique_ptr<RubberWindow> rubber_;
    std::unique_ptr<ClipboardWatch> clipboardWatch_;
    QTimer toolbarUpdate_;
    QElapsedTimer lastHand_;  ///< Since the user selected or scrolled.
    platform::Observation observation_;
};

}  // namespace ui
