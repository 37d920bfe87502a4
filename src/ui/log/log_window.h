#pragma once

#include <QPersistentModelIndex>
#include <QWidget>
#include <memory>

#include "diagnostics/integrated_log_reader.h"

class QCheckBox;
class QComboBox;
class QListView;
class QMenu;
class QPlainTextEdit;
class QProgressBar;
class QToolButton;

namespace ui {

class LogFindBar;
class LogModel;

/// The messages of this program, the recent past and what arrives. One for the process.
class LogWindow final : public QWidget {
    Q_OBJECT

public:
    explicit LogWindow(platform::UserDefaults& defaults);
    ~LogWindow() override;

    /// Whether there is a log tool.
    [[nodiscard]] bool canDisplayLog() const { return reader_.canDisplayLog(); }
    void displayLog();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    enum Shown { Everything, WithoutDebugLines, ProblemsOnly };

    /// Where a list stands, so that it does not move under the reader's eyes.
    struct Place {
        bool isAtEnd = true;
        QPersistentModelIndex top;
        int offset = 0;
    };

    QWidget* makeToolbar();
    QMenu* makeViewMenu();
    void makeList();
    void addKeys();
    void applyShown();
    void updateRows();
    void updateState();
    void updateButtons();
    void showDetails();
    void copySelection() const;
    [[nodiscard]] QString selectedText(qsizetype mostLines) const;
    void save();
    [[nodiscard]] Place place() const;
    void restore(const Place& place);
    [[nodiscard]] QString headerText() const;

    platform::UserDefaults& defaults_;
    std::unique_ptr<diagnostics::LogSource> source_;
    diagnostics::ILRIntegratedLogReader reader_;
    LogModel* model_;
    QListView* list_;
    QPlainTextEdit* details_;
    LogFindBar* findBar_;
    QComboBox* shown_ = nullptr;
    QCheckBox* debugLoggingSwitch = nullptr;
    QProgressBar* spinner = nullptr;
    QToolButton* findEarlierResultsButton = nullptr;
    QToolButton* clearButton = nullptr;
    QToolButton* saveButton = nullptr;
};

}  // namespace ui
