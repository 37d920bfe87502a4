#include "ui/help/help_window.h"

#include <QDialogButtonBox>
#include <QMenuBar>
#include <QTextBrowser>
#include <QVBoxLayout>

#include "ui/help/help_text.h"
#include "ui/text.h"

namespace ui {

HelpWindow::HelpWindow(const QMenuBar& menus, QWidget* parent)
    : QDialog(parent), text_(new QTextBrowser(this)) {
    setWindowTitle(translated("Orlop Help"));
    setAttribute(Qt::WA_DeleteOnClose);
    text_->setAccessibleName(windowTitle());
    text_->setOpenLinks(false);
    text_->document()->setDocumentMargin(12);
    text_->setHtml(helpText(menus));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text_);
    layout->addWidget(buttons);
    resize(520, 600);
    text_->setFocus();
}

void showHelp(QWidget& window, const QMenuBar& menus) {
    auto* help = window.findChild<HelpWindow*>();
    if (help == nullptr) {
        help = new HelpWindow(menus, &window);
    }
    help->show();
    help->raise();
    help->activateWindow();
}

}  // namespace ui
