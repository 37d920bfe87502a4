#pragma once

#include <QDialog>

#include "app/rules/rule_book.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;

namespace ui {

class FolderSelector;

/// Takes down what a rule is about and what it does. The rule book is not changed: see
/// `defineOrEditSpecialCase`.
class RuleEditor final : public QDialog {
    Q_OBJECT

public:
    /// Answer of `exec` besides those of a dialog: the rule is to go.
    static constexpr int Removed = QDialog::Accepted + 1;

    enum class Purpose { Define, Edit };

    /// Begins with what `rule` says. The rest outlives the editor.
    RuleEditor(Purpose purpose, const app::Rule& rule, const app::RuleBook& rules,
               platform::UserDefaults& defaults, QWidget* parent);

    [[nodiscard]] app::Rule rule() const;

private:
    [[nodiscard]] QPlainTextEdit* makeField(const char* name, const QStringList& entries);
    [[nodiscard]] QWidget* makeConditions();
    [[nodiscard]] QWidget* makeConsequences();
    void makeButtons(Purpose purpose);

    [[nodiscard]] QStringList hostsFromField() const;
    [[nodiscard]] QStringList extensionsFromField() const;
    [[nodiscard]] QString chosenApplication() const;

    void updateApplicationSelector();
    void updateCommonControls();
    void updateProblem();

    /// What the rule said so far, kept while its application cannot be chosen.
    QString currentApplication_;
    QPlainTextEdit* specialCaseHostsField;
    QPlainTextEdit* specialCaseExtensionsField;
    QLabel* problem_;
    QStackedWidget* specialCaseCommonControlsTabView;
    FolderSelector* specialCaseDownloadsFolderSelector;
    QCheckBox* specialCaseApplicationSwitch;
    QComboBox* specialCaseApplicationSelector;
    QPushButton* specialCaseOKButton = nullptr;
};

/// Lets the user edit a rule of the book, or define one if `specialCase` is empty, and stores what
/// becomes of it. Modal.
void defineOrEditSpecialCase(const QVariantMap& specialCase, app::RuleBook& rules,
                             platform::UserDefaults& defaults, QWidget* parent);

}  // namespace ui
