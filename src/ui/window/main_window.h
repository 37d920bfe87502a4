#pragma once

#include <QMainWindow>

class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;

namespace app {
class DQMainController;
}

namespace ui {

class DQDownloadList;

/// The window with the list.
class MainWindow final : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(app::DQMainController& controller);
    ~MainWindow() override;

    [[nodiscard]] DQDownloadList& list() const { return *downloadList; }
    /// Where the window stands, kept for the next start.
    void saveFrame() const;

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void makeToolbar();
    void makeMenus();
    void makeStatusLine();
    void connectController();
    void restoreFrame();

    void updateStatus();
    void showURLPanel(const QString& text = {});
    void openFilesWithPanel();
    void paste();
    void showContextMenu(int row, const QPoint& position);
    void startOrPauseContext();
    void removeContext();

    app::DQMainController& controller_;
    DQDownloadList* downloadList;
    QLineEdit* toolbarFilterField = nullptr;
    QLabel* statusField = nullptr;
    QPushButton* clearButton = nullptr;
    QAction* startPause_ = nullptr;
};

}  // namespace ui
