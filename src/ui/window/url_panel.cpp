#include "ui/window/url_panel.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <chrono>

#include "app/main_controller.h"
#include "app/settings.h"
#include "engine/record/checksum.h"
#include "platform/base/user_defaults.h"
#include "ui/rules/folder_selector.h"
#include "ui/settings.h"
#include "ui/text.h"
#include "ui/window/approaching_end.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace ui {

URLPanel::URLPanel(app::DQMainController& controller, QWidget& window, const ApproachingEnd& end)
    : QDialog(&window),
      controller_(controller),
      defaults_(controller.surroundings().defaults),
      openURLTextView(new QPlainTextEdit(this)),
      note_(new QLabel(this)),
      preview_(new QLabel(this)),
      folder_(
          new FolderSelector(FolderSelector::Use::Rule, controller.ruleBook(), defaults_, this)),
      startsAtOnce_(new QCheckBox(translated("Start at &once"), this)),
      checksum_(new QLineEdit(this)),
      checksumNote_(new QLabel(this)) {
    setObjectName(u"openURLPanel"_s);
    setWindowTitle(translated("Add Addresses"));
    resize(560, 330);
    auto* label = new QLabel(translated("One or several addresses; {1-20} makes a series:"), this);
    label->setBuddy(openURLTextView);
    makeText();
    note_->setObjectName(u"openURLNote"_s);
    note_->setWordWrap(true);
    note_->hide();
    preview_->setObjectName(u"openURLPreview"_s);
    auto* layout = new QVBoxLayout(this);
    for (QWidget* widget : {static_cast<QWidget*>(note_), static_cast<QWidget*>(label)})
        layout->addWidget(widget);
    layout->addWidget(openURLTextView, 1);
    layout->addWidget(preview_);
    layout->addWidget(makeChoices());
    layout->addWidget(makeButtons());
    look_.setSingleShot(true);
    look_.setInterval(150ms);
    connect(&look_, &QTimer::timeout, this, &URLPanel::look);
    letTextSurviveTheEnd(end);
    resetChoices();
    look();
}

/// Until it was added or cancelled. The display may go before the program does.
void URLPanel::letTextSurviveTheEnd(const ApproachingEnd& end) {
    connect(this, &QDialog::finished, this, [this, &end] {
        if (!end.isNear())
            keepText({});
    });
    connect(&end, &ApproachingEnd::announced, this, [this] {
        if (isVisible())
            keepText(openURLTextView->toPlainText());
        defaults_.synchronize();
    });
}

void URLPanel::keepText(const QString& text) {
    // Settings are written whole; who enters more than this has it in a file.
    constexpr qsizetype mostKept = 1'000'000;
    if (text.trimmed().isEmpty() || text.size() > mostKept)
        defaults_.removeObject(settings::unfinishedAddresses.name());
    else
        defaults_.set(settings::unfinishedAddresses, text);
}

void URLPanel::makeText() {
    openURLTextView->setObjectName(u"openURLTextView"_s);
    openURLTextView->setTabChangesFocus(true);
    openURLTextView->setLineWrapMode(QPlainTextEdit::NoWrap);
    openURLTextView->setAccessibleName(translated("Addresses"));
    connect(openURLTextView, &QPlainTextEdit::textChanged, this, [this] {
        updateAccept();
        look_.start();
    });
}

QWidget* URLPanel::makeChoices() {
    auto* choices = new QWidget(this);
    auto* form = new QFormLayout(choices);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    folder_->setObjectName(u"openURLFolder"_s);
    form->addRow(translated("&Folder:"), folder_);
    checksum_->setObjectName(u"openURLChecksum"_s);
    checksum_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    checksumNote_->setObjectName(u"openURLChecksumNote"_s);
    form->addRow(translated("Chec&ksum:"), checksum_);
    form->addRow(QString(), checksumNote_);
    startsAtOnce_->setObjectName(u"openURLStart"_s);
    form->addRow(QString(), startsAtOnce_);
    connect(checksum_, &QLineEdit::textChanged, this, &URLPanel::checksumDidChange);
    return choices;
}

QWidget* URLPanel::makeButtons() {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    accept_ = buttons->button(QDialogButtonBox::Ok);
    accept_->setText(translated("Add"));
    accept_->setToolTip(QKeySequence(Qt::CTRL | Qt::Key_Return).toString(QKeySequence::NativeText));
    connect(buttons, &QDialogButtonBox::accepted, this, &URLPanel::openURLOK);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* shortcut = new QShortcut(QKeySequence(Qt::CTRL | key), this);
        connect(shortcut, &QShortcut::activated, this, [this] {
            look();  // At what was typed or pasted a moment ago, too.
            accept_->click();
        });
    }
    return buttons;
}

/// What was chosen for the last addresses says nothing about others.
void URLPanel::resetChoices() {
    folder_->setFolder(std::nullopt);
    checksum_->clear();
    startsAtOnce_->setChecked(defaults_.get(app::settings::autoStart));
}

void URLPanel::openWithString(const QString& text, const QString& note) {
    if (!isVisible()) {
        resetChoices();
        openURLTextView->clear();
    }
    if (openURLTextView->toPlainText().trimmed().isEmpty())
        note_->hide();  // What it was about is gone.
    addText(text);
    // A proposal is typed over, what somebody wrote is not.
    if (!note.isEmpty()) {
        openURLTextView->moveCursor(QTextCursor::End);
        note_->setText(note);
        note_->show();
    }
    openURLTextView->setFocus();
    show();
    look();
    raise();
    activateWindow();
}

/// Selects what it adds, which is nothing that is there already.
void URLPanel::addText(const QString& text) {
    const QString present = openURLTextView->toPlainText();
    const auto asLines = [](const QString& lines) {
        return u'\n' + QString(lines).replace(u"\r\n"_s, u"\n"_s).trimmed() + u'\n';
    };
    if (asLines(present).contains(asLines(text)) || text.trimmed().isEmpty())
        return;
    QTextCursor cursor(openURLTextView->document());
    cursor.beginEditBlock();
    cursor.movePosition(QTextCursor::End);
    if (present.trimmed().isEmpty())
        cursor.select(QTextCursor::Document);
    else if (!present.endsWith(u'\n'))
        cursor.insertText(u"\n"_s);
    const int start = cursor.selectionStart();
    cursor.insertText(text);
    cursor.endEditBlock();
    const int end = cursor.position();
    cursor.setPosition(start);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    openURLTextView->setTextCursor(cursor);
    openURLTextView->document()->setModified(true);  // Nowhere else, as what is typed.
}

void URLPanel::look() {
    if (isVisible())
        keepText(openURLTextView->toPlainText());
    found_ = app::textPreview(openURLTextView->toPlainText(), controller_.downloads(), defaults_);
    preview_->setText(app::previewText(found_));
    const bool mayHaveChecksum = found_.only.has_value();
    checksum_->setEnabled(mayHaveChecksum);
    if (!mayHaveChecksum)
        checksum_->clear();
    checksumDidChange();
}

void URLPanel::checksumDidChange() {
    const QString text = checksum_->text().trimmed();
    const auto checksum = engine::checksumFromText(text);
    if (!found_.only)
        checksumNote_->setText(translated("For a single address only."));
    else if (text.isEmpty())
        checksumNote_->setText(translated("Without one, the file is taken as it comes."));
    else
        checksumNote_->setText(checksum ? engine::algorithmTitle(checksum->algorithm)
                                        : translated("This is no MD5, SHA-1 or SHA-2."));
    updateAccept();
}

void URLPanel::updateAccept() {
    const QString checksum = checksum_->text().trimmed();
    accept_->setEnabled(!openURLTextView->toPlainText().trimmed().isEmpty() &&
                        (checksum.isEmpty() || engine::checksumFromText(checksum)));
}

app::ScriptArguments URLPanel::arguments() const {
    app::ScriptArguments arguments;
    arguments.toPosixPath = folder_->folder().value_or(QString());
    arguments.startsAtOnce = startsAtOnce_->isChecked();
    return arguments;
}

/// A checksum travels behind its address.
QString URLPanel::textToOpen() const {
    const QString text = openURLTextView->toPlainText();
    const auto checksum = engine::checksumFromText(checksum_->text().trimmed());
    const app::TextPreview now = app::textPreview(text, controller_.downloads(), defaults_);
    if (!checksum || !now.only)
        return text;
    return now.only->absoluteString().section(u'#', 0, 0) + u'#' + checksum->text();
}

void URLPanel::openURLOK() {
    const QString text = textToOpen();
    const app::ScriptArguments chosen = arguments();
    accept();
    keepText({});  // However near an end seems to be: it is added.
    controller_.openText(text, chosen);
}

}  // namespace ui
