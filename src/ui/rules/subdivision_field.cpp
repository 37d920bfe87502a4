#include "ui/rules/subdivision_field.h"

#include <QComboBox>
#include <QDateTime>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "app/rules/subdivision_suggestions.h"
#include "app/settings.h"
#include "links/format/dates.h"
#include "links/names/file_names.h"
#include "links/text/localization.h"
#include "links/text/typography.h"
#include "ui/settings/note.h"
#include "ui/settings/settings_binder.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

SubdivisionField::SubdivisionField(const platform::Setting<QString>& setting,
                                   SettingsBinder& binder, QWidget* parent)
    : QWidget(parent), field_(new QComboBox(this)), example_(makeNote({}, this)) {
    field_->setEditable(true);
    field_->setInsertPolicy(QComboBox::NoInsert);
    field_->setCompleter(nullptr);
    field_->setMinimumContentsLength(26);
    addSuggestions(binder.defaults().get(app::settings::allowDashesInLocalizedSuggestions));
    QLineEdit* edit = field_->lineEdit();
    edit->setPlaceholderText(translated("No subfolders"));
    field_->setCurrentIndex(-1);
    binder.bind(edit, setting);
    connect(edit, &QLineEdit::textChanged, this, &SubdivisionField::showExample);
    connect(field_, &QComboBox::activated, this, [this, edit](int index) {
        const QString format = field_->itemData(index).toString();
        edit->setText(format);
        Q_EMIT edit->textEdited(format);
    });
    setFocusProxy(field_);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(field_);
    layout->addWidget(example_);
    showExample(edit->text());
}

void SubdivisionField::addSuggestions(bool allowsNestedFolders) {
    for (const auto& [title, format] :
         app::subdivisionSuggestions(QDateTime::currentDateTime(), allowsNestedFolders)) {
        if (format.isEmpty()) {
            field_->insertSeparator(field_->count());
        } else {
            const QString suffix = links::stringWithDashesForHyphens(
                links::filledFormat(translated(" - Example: %@"), {title}));
            field_->addItem(format + suffix, format);
        }
    }
}

void SubdivisionField::showExample(const QString& format) {
    const QString date =
        links::dateStringWithFormat(QDateTime::currentDateTime(), format.trimmed());
    const QString folder = links::cleanPathByReplacingDashesWithString(date, std::nullopt);
    example_->setVisible(!format.trimmed().isEmpty());
    example_->setText(folder.isEmpty()
                          ? translated("This is no date format; no subfolder will be made.")
                          : links::filledFormat(translated("Today: %@"), {folder}));
    field_->setToolTip(folder.isEmpty() ? QString() : example_->text());
}

}  // namespace ui
