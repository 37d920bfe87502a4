#include "ui/authentication/authentication_panel.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "ui/art/icons.h"
#include "ui/text.h"

namespace ui {

namespace {

constexpr int iconSize = 64;
constexpr int textWidth = 360;

/// What a server says is shown as it is, never as markup.
QLabel* makeTextLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(textWidth);
    return label;
}

}  // namespace

AuthenticationPanel::AuthenticationPanel()
    : authenticationIconImageView(new QLabel(this)),
      authenticationExplanationField(makeTextLabel(this)),
      authenticationSecurityInfoField(makeTextLabel(this)),
      hostLabel_(new QLabel(this)),
      hostField_(new QLabel(this)),
      authenticationDomainField(new QLineEdit(this)),
      authenticationNameField(new QLineEdit(this)),
      authenticationPasswordField(new QLineEdit(this)),
      authenticationKeychainSwitch(new QCheckBox(translated("&Remember this password"), this)),
      fields_(makeFields()),
      buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this)) {
    setWindowTitle(translated("Authentication"));
    authenticationIconImageView->setPixmap(
        applicationIcon().pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
    QFont bold = authenticationExplanationField->font();
    bold.setBold(true);
    authenticationExplanationField->setFont(bold);
    buttons_->button(QDialogButtonBox::Ok)->setText(translated("Log In"));
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* texts = new QVBoxLayout;
    texts->addWidget(authenticationExplanationField);
    texts->addWidget(authenticationSecurityInfoField);
    texts->addLayout(fields_);
    texts->addWidget(buttons_);
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(authenticationIconImageView, 0, Qt::AlignTop);
    layout->addLayout(texts, 1);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

QFormLayout* AuthenticationPanel::makeFields() {
    auto* fields = new QFormLayout;
    hostField_->setTextFormat(Qt::PlainText);
    authenticationPasswordField->setEchoMode(QLineEdit::Password);
    fields->addRow(hostLabel_, hostField_);
    fields->addRow(translated("&Domain:"), authenticationDomainField);
    fields->addRow(translated("&Name:"), authenticationNameField);
    fields->addRow(translated("&Password:"), authenticationPasswordField);
    fields->addRow(QString(), authenticationKeychainSwitch);
    return fields;
}

bool AuthenticationPanel::show(const app::AuthenticationQuestion& question, Client& client) {
    client_ = &client;
    present(question);
    comeUp();
    return true;
}

void AuthenticationPanel::present(const app::AuthenticationQuestion& question) {
    authenticationExplanationField->setText(question.explanation);
    authenticationSecurityInfoField->setText(question.securityInfo);
    hostLabel_->setText(question.isForProxy ? translated("Proxy:") : translated("Server:"));
    hostField_->setText(question.host);
    authenticationKeychainSwitch->setChecked(question.storesPassword);
    for (QLineEdit* const field :
         {authenticationDomainField, authenticationNameField, authenticationPasswordField})
        field->clear();
    authenticationDomainField->setVisible(question.needsDomain);
    fields_->labelForField(authenticationDomainField)->setVisible(question.needsDomain);
    (question.needsDomain ? authenticationDomainField : authenticationNameField)->setFocus();
}

void AuthenticationPanel::comeUp() {
    adjustSize();
    if (!isVisible()) {
        QRect frame = rect();
        frame.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
        move(frame.topLeft());
    }
    QDialog::show();
    raise();
    activateWindow();
}

void AuthenticationPanel::close() {
    client_ = nullptr;
    authenticationPasswordField->clear();
    hide();
}

void AuthenticationPanel::accept() {
    if (client_ == nullptr)
        return;
    const app::AuthenticationAnswer answer{
        authenticationDomainField->text(), authenticationNameField->text(),
        authenticationPasswordField->text(), authenticationKeychainSwitch->isChecked()};
    client_->applyCredentialsFromDialog(answer);
}

void AuthenticationPanel::reject() {
    if (client_ != nullptr)
        client_->cancelDialog();
}

}  // namespace ui
