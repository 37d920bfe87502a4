#include "ui/log/problem_report_dialog.h"

#include <QDateTime>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include "app/failures/file_problem.h"
#include "engine/settings.h"
#include "platform/base/log_store.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"
#include "ui/text.h"

namespace ui {

using namespace Qt::Literals::StringLiterals;

ProblemReportDialog::ProblemReportDialog(std::vector<app::ReportFile> files, bool isPrivate,
                                         QWidget* parent)
    : QDialog(parent),
      files_(std::move(files)),
      names_(new QListWidget(this)),
      contents_(new QPlainTextEdit(this)) {
    setWindowTitle(translated("Report a Problem"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto* explanation = new QLabel(
        translated("This is all that the report will hold. It is written to a file of your choice "
                   "and sent nowhere: attach it to a message yourself.") +
            u' ' +
            (isPrivate ? translated("Addresses, names and personal folders are replaced, since "
                                    "Private Downloading is on.")
                       : translated("It may name what you download. With Private Downloading on, "
                                    "addresses and names are replaced.")),
        this);
    explanation->setWordWrap(true);
    for (const app::ReportFile& file : files_)
        names_->addItem(file.name);
    names_->setAccessibleName(translated("Files of the Report"));
    contents_->setReadOnly(true);
    contents_->setLineWrapMode(QPlainTextEdit::NoWrap);
    contents_->setAccessibleName(translated("Contents"));
    auto* splitter = new QSplitter(this);
    splitter->addWidget(names_);
    splitter->addWidget(contents_);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({150, 500});
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Save)->setText(translated("Save..."));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(explanation);
    layout->addWidget(splitter, 1);
    layout->addWidget(buttons);
    connect(names_, &QListWidget::currentRowChanged, this, &ProblemReportDialog::showFile);
    connect(buttons, &QDialogButtonBox::accepted, this, &ProblemReportDialog::save);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    names_->setCurrentRow(0);
    resize(720, 480);
}

void ProblemReportDialog::showFile(int number) {
    if (number >= 0)
        contents_->setPlainText(
            QString::fromUtf8(files_[static_cast<std::size_t>(number)].contents));
}

QString ProblemReportDialog::write(const QString& path) const {
    const QByteArray archive = app::reportArchive(files_, QDateTime::currentSecsSinceEpoch());
    const auto error = platform::writeFileAtomically(path, archive);
    return error ? app::writingProblem(*error) : QString();
}

void ProblemReportDialog::save() {
    const QString path = QFileDialog::getSaveFileName(
        this, windowTitle(), QDir::homePath() + u"/orlop-report.tar.gz"_s,
        translated("Archives (%1)").arg(u"*.tar.gz"_s));
    if (path.isEmpty())
        return;
    const QString problem = write(path);
    if (problem.isEmpty())
        accept();
    else
        QMessageBox::warning(this, windowTitle(),
                             translated("The report cannot be saved: %1").arg(problem));
}

void showProblemReport(const app::DQMainController& controller,
                       const platform::UserDefaults& defaults, QWidget* window) {
    auto* dialog = new ProblemReportDialog(
        app::problemReport(controller, defaults, platform::logStoreFolder()),
        defaults.get(engine::settings::privateDownloading), window);
    dialog->show();
}

}  // namespace ui
