#include "ui/window/url_panel.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "ui/text.h"

namespace ui {

URLPanel::URLPanel(QWidget* parent, const QString& text)
    : QDialog(parent), openURLTextView(new QPlainTextEdit(text, this)) {
    setWindowTitle(translated("Open URLs"));
    resize(560, 260);
    auto* label = new QLabel(translated("One or several addresses; {1-20} makes a series:"), this);
    label->setBuddy(openURLTextView);
    openURLTextView->setTabChangesFocus(true);
    openURLTextView->setAccessibleName(label->text());
    openURLTextView->selectAll();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Open | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* accept = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return), this);
    connect(accept, &QShortcut::activated, this, &QDialog::accept);
    auto* open = buttons->button(QDialogButtonBox::Open);
    const auto enable = [this, open] {
        open->setEnabled(!openURLTextView->toPlainText().trimmed().isEmpty());
    };
    connect(openURLTextView, &QPlainTextEdit::textChanged, this, enable);
    enable();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(openURLTextView);
    layout->addWidget(buttons);
}

QString URLPanel::text() const {
    return openURLTextView->toPlainText();
}

}  // namespace ui
