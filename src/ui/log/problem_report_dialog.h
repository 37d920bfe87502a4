#pragma once

#include <QDialog>
#include <vector>

#include "app/report/problem_report.h"

class QListWidget;
class QPlainTextEdit;

namespace ui {

/// Shows all that a report holds before anything is written.
class ProblemReportDialog final : public QDialog {
    Q_OBJECT

public:
    ProblemReportDialog(std::vector<app::ReportFile> files, bool isPrivate, QWidget* parent);

    /// Writes exactly what is shown. Answers why it could not; empty: it is written.
    [[nodiscard]] QString write(const QString& path) const;

private:
    void showFile(int number);
    void save();

    const std::vector<app::ReportFile> files_;
    QListWidget* names_;
    QPlainTextEdit* contents_;
};

/// The report as it is now, in a dialog of the window.
void showProblemReport(const app::DQMainController& controller,
                       const platform::UserDefaults& defaults, QWidget* window);

}  // namespace ui
