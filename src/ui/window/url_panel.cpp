#include "ui/window/url_panel.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "ui/text.h"

namespace ui {

URLPanel::URLPanel(QWidget& window, std::function<void(const QString&)> open)
    : QDialog(&window),
      openURLTextView(new QPlainTextEdit(this)),
      note_(new QLabel(this)),
      open_(std::move(open)) {
    setObjectName(QStringLiteral("openURLPanel"));
    setWindowTitle(translated("Add Addresses"));
    resize(560, 260);
    auto* label = new QLabel(translated("One or several addresses; {1-20} makes a series:"), this);
    label->setBuddy(openURLTextView);
    openURLTextView->setObjectName(QStringLiteral("openURLTextView"));
    openURLTextView->setTabChangesFocus(true);
    openURLTextView->setLineWrapMode(QPlainTextEdit::NoWrap);
    openURLTextView->setAccessibleName(translated("Addresses"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Open | QDialogButtonBox::Cancel, this);
    QPushButton* accept = buttons->button(QDialogButtonBox::Open);
    accept->setToolTip(QKeySequence(Qt::CTRL | Qt::Key_Return).toString(QKeySequence::NativeText));
    connect(buttons, &QDialogButtonBox::accepted, this, &URLPanel::openURLOK);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* shortcut = new QShortcut(QKeySequence(Qt::CTRL | key), this);
        connect(shortcut, &QShortcut::activated, accept, &QPushButton::click);
    }
    const auto enable = [this, accept] {
        accept->setEnabled(!openURLTextView->toPlainText().trimmed().isEmpty());
    };
    connect(openURLTextView, &QPlainTextEdit::textChanged, this, enable);
    enable();
    auto* layout = new QVBoxLayout(this);
    note_->setObjectName(QStringLiteral("openURLNote"));
    note_->setWordWrap(true);
    note_->hide();
    layout->addWidget(note_);
    layout->addWidget(label);
    layout->addWidget(openURLTextView);
    layout->addWidget(buttons);
}

void URLPanel::openWithString(const QString& text, const QString& note) {
    const QString present = isVisible() ? openURLTextView->toPlainText().trimmed() : QString();
    const bool adds = !note.isEmpty() && !present.isEmpty() && present != text;
    openURLTextView->setPlainText(adds ? present + u'\n' + text : text);
    openURLTextView->selectAll();
    openURLTextView->setFocus();
    note_->setText(note);
    note_->setVisible(!note.isEmpty());
    show();
    raise();
    activateWindow();
}

void URLPanel::openURLOK() {
    accept();
    open_(openURLTextView->toPlainText());
}

}  // namespace ui
