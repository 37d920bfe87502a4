#pragma once

#include <QDialog>

#include "app/authentication/authentication_prompt.h"

class QCheckBox;
class QDialogButtonBox;
class QFormLayout;
class QLabel;
class QLineEdit;

namespace ui {

/// The window in which a name and a password are asked for. It blocks nothing: other downloads, and
/// the rest of the program, go on.
class AuthenticationPanel final : public QDialog, public app::AuthenticationPrompt {
    Q_OBJECT

public:
    AuthenticationPanel();

    [[nodiscard]] bool isVisible() const override { return QDialog::isVisible(); }
    [[nodiscard]] bool show(const app::AuthenticationQuestion& question, Client& client) override;
    void close() override;

    /// The window's two buttons.
    void accept() override;
    void reject() override;

private:
    [[nodiscard]] QFormLayout* makeFields();
    void present(const app::AuthenticationQuestion& question);
    void comeUp();

    QLabel* authenticationIconImageView;
    QLabel* authenticationExplanationField;
    QLabel* authenticationSecurityInfoField;
    QLabel* hostLabel_;
    QLabel* hostField_;
    QLineEdit* authenticationDomainField;
    QLineEdit* authenticationNameField;
    QLineEdit* authenticationPasswordField;
    QCheckBox* authenticationKeychainSwitch;
    QFormLayout* fields_;
    QDialogButtonBox* buttons_;
    Client* client_ = nullptr;  ///< Null: nothing is asked.
};

}  // namespace ui
