#include "ui/rules/rule_editor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <algorithm>

#include "app/rules/rule_applications.h"
#include "engine/record/rule_matching.h"
#include "links/text/localization.h"
#include "ui/art/icons.h"
#include "ui/rules/folder_selector.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

/// What the lines of a field stand for, as `read` understands them.
struct Entries {
    QStringList values;
    QString impossible;  ///< The first one that stands for nothing. Empty: there is none.
};

Entries entriesOf(const QPlainTextEdit& field, QString (*read)(const QString&)) {
    Entries entries;
    for (const QString& line :
         app::dotTrimmedStringValuesSeparatedByNewlines(field.toPlainText())) {
        const QString value = read(line);
        if (!value.isEmpty()) {
            entries.values.append(value);
        } else if (entries.impossible.isEmpty()) {
            entries.impossible = line;
        }
    }
    return entries;
}

QLabel* makeWrappingLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    return label;
}

}  // namespace

RuleEditor::RuleEditor(Purpose purpose, const app::Rule& rule, const app::RuleBook& rules,
                       platform::UserDefaults& defaults, QWidget* parent)
    : QDialog(parent),
      currentApplication_(rule.application),
      specialCaseHostsField(makeField("specialCaseHostsField", rule.hosts)),
      specialCaseExtensionsField(makeField("specialCaseExtensionsField", rule.extensions)),
      problem_(makeWrappingLabel({}, this)),
      specialCaseCommonControlsTabView(new QStackedWidget(this)),
      specialCaseDownloadsFolderSelector(
          new FolderSelector(FolderSelector::Use::Rule, rules, defaults, this)),
      specialCaseApplicationSwitch(new QCheckBox(translated("Open &with:"), this)),
      specialCaseApplicationSelector(new QComboBox(this)) {
    problem_->setObjectName(u"problem"_s);
    setWindowTitle(translated(purpose == Purpose::Edit ? "Edit Rule" : "Define Rule"));
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addWidget(makeConditions());
    layout->addWidget(problem_);
    layout->addWidget(specialCaseCommonControlsTabView);
    auto* hint = makeWrappingLabel(
        translated("Say which downloads the rule is for: those from certain hosts, those of "
                   "certain types, or those that are both."),
        this);
    specialCaseCommonControlsTabView->addWidget(hint);
    specialCaseCommonControlsTabView->addWidget(makeConsequences());
    makeButtons(purpose);
    specialCaseApplicationSwitch->setChecked(!rule.application.isEmpty());
    if (!rule.downloadsFolder.isEmpty()) {
        specialCaseDownloadsFolderSelector->setFolder(rule.downloadsFolder);
    }
    updateApplicationSelector();
    resize(std::max(560, sizeHint().width()), sizeHint().height());
}

QPlainTextEdit* RuleEditor::makeField(const char* name, const QStringList& entries) {
    auto* field = new QPlainTextEdit(entries.join(u'\n'), this);
    field->setObjectName(QString::fromLatin1(name));
    field->setTabChangesFocus(true);
    field->setLineWrapMode(QPlainTextEdit::NoWrap);
    field->setMinimumHeight(fontMetrics().lineSpacing() * 6);
    connect(field, &QPlainTextEdit::textChanged, this, &RuleEditor::updateApplicationSelector);
    return field;
}

QWidget* RuleEditor::makeConditions() {
    auto* conditions = new QWidget(this);
    auto* grid = new QGridLayout(conditions);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(16);
    const auto add = [&](int column, const char* title, QPlainTextEdit* field,
                         const char* placeholder) {
        auto* label = new QLabel(translated(title), conditions);
        label->setBuddy(field);
        field->setAccessibleName(label->text().remove(u'&'));
        field->setPlaceholderText(translated(placeholder));
        grid->addWidget(label, 0, column);
        grid->addWidget(field, 1, column);
    };
    add(0, "From these &hosts, one on each line", specialCaseHostsField,
        "example.org\ndownloads.example.com");
    add(1, "With these e&xtensions, one on each line", specialCaseExtensionsField, "zip\npdf");
    return conditions;
}

QWidget* RuleEditor::makeConsequences() {
    auto* consequences = new QWidget(specialCaseCommonControlsTabView);
    auto* form = new QFormLayout(consequences);
    form->setContentsMargins(0, 0, 0, 0);
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form->addRow(translated("&Download to:"), specialCaseDownloadsFolderSelector);
    form->addRow(specialCaseApplicationSwitch, specialCaseApplicationSelector);
    specialCaseDownloadsFolderSelector->setObjectName(u"specialCaseDownloadsFolderSelector"_s);
    specialCaseDownloadsFolderSelector->setAccessibleName(translated("Download to"));
    specialCaseApplicationSwitch->setObjectName(u"specialCaseApplicationSwitch"_s);
    specialCaseApplicationSelector->setObjectName(u"specialCaseApplicationSelector"_s);
    specialCaseApplicationSelector->setAccessibleName(translated("Application"));
    specialCaseApplicationSelector->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(specialCaseDownloadsFolderSelector, &FolderSelector::folderChosen, this,
            &RuleEditor::updateCommonControls);
    connect(specialCaseApplicationSwitch, &QCheckBox::toggled, this,
            &RuleEditor::updateCommonControls);
    connect(specialCaseApplicationSelector, &QComboBox::activated, this, [this] {
        currentApplication_ = specialCaseApplicationSelector->currentData().toString();
        updateCommonControls();
    });
    return consequences;
}

void RuleEditor::makeButtons(Purpose purpose) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    specialCaseOKButton = buttons->button(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    if (purpose == Purpose::Edit) {
        QPushButton* remove =
            buttons->addButton(translated("&Remove"), QDialogButtonBox::DestructiveRole);
        remove->setObjectName(u"specialCaseRemoveButton"_s);
        remove->setAutoDefault(false);
        connect(remove, &QPushButton::clicked, this, [this] { done(Removed); });
    }
    layout()->addWidget(buttons);
}

QStringList RuleEditor::hostsFromField() const {
    return entriesOf(*specialCaseHostsField, engine::hostFromText).values;
}

QStringList RuleEditor::extensionsFromField() const {
    return entriesOf(*specialCaseExtensionsField, engine::extensionFromText).values;
}

QString RuleEditor::chosenApplication() const {
    const bool isChosen =
        specialCaseApplicationSwitch->isEnabled() && specialCaseApplicationSwitch->isChecked();
    return isChosen ? specialCaseApplicationSelector->currentData().toString() : QString();
}

app::Rule RuleEditor::rule() const {
    return {hostsFromField(), extensionsFromField(),
            specialCaseDownloadsFolderSelector->folder().value_or(QString()), chosenApplication()};
}

void RuleEditor::updateApplicationSelector() {
    const QStringList extensions = extensionsFromField();
    const auto applications = app::applicationsForExtensions(extensions);
    specialCaseApplicationSelector->clear();
    for (const platform::ApplicationEntry& application : applications) {
        specialCaseApplicationSelector->addItem(applicationIconNamed(application.iconName),
                                                application.name, application.identifier);
    }
    if (applications.empty()) {
        specialCaseApplicationSelector->addItem(u"-"_s);
    }
    const QString proposed =
        app::proposedApplication(applications, currentApplication_, extensions);
    specialCaseApplicationSelector->setCurrentIndex(
        std::max(0, specialCaseApplicationSelector->findData(proposed)));
    specialCaseApplicationSwitch->setEnabled(!applications.empty());
    updateCommonControls();
}

void RuleEditor::updateCommonControls() {
    const bool isEmpty = specialCaseHostsField->toPlainText().isEmpty() &&
                         specialCaseExtensionsField->toPlainText().isEmpty();
    specialCaseCommonControlsTabView->setCurrentIndex(isEmpty ? 0 : 1);
    specialCaseApplicationSelector->setEnabled(specialCaseApplicationSwitch->isEnabled() &&
                                               specialCaseApplicationSwitch->isChecked());
    const app::Rule current = rule();
    updateProblem();
    // What is not understood would be lost.
    specialCaseOKButton->setEnabled(current.hasCondition() && current.hasConsequence() &&
                                    problem_->text().isEmpty());
}

void RuleEditor::updateProblem() {
    const QString host = entriesOf(*specialCaseHostsField, engine::hostFromText).impossible;
    const QString extension =
        entriesOf(*specialCaseExtensionsField, engine::extensionFromText).impossible;
    QString text;
    if (!host.isEmpty()) {
        text = links::filledFormat(
            translated(
                "“%@” is no name of a host. Write one on each line, as in example.org, without "
                "what follows it in an address."),
            {host});
    } else if (!extension.isEmpty()) {
        text = links::filledFormat(
            translated("“%@” is no extension. Write one on each line, as in zip."), {extension});
    }
    problem_->setText(text);
    problem_->setVisible(!text.isEmpty());
}

void defineOrEditSpecialCase(const QVariantMap& specialCase, app::RuleBook& rules,
                             platform::UserDefaults& defaults, QWidget* parent) {
    const bool isNew = specialCase.isEmpty();
    RuleEditor editor(isNew ? RuleEditor::Purpose::Define : RuleEditor::Purpose::Edit,
                      app::ruleFromDictionary(specialCase), rules, defaults, parent);
    const int answer = editor.exec();
    if (answer == RuleEditor::Removed) {
        rules.removeSpecialCase(specialCase);
    } else if (answer == QDialog::Accepted && isNew) {
        rules.addSpecialCase(editor.rule());
    } else if (answer == QDialog::Accepted) {
        rules.replaceSpecialCase(specialCase, editor.rule());
    }
}

}  // namespace ui
