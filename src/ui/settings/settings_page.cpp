#include "ui/settings/settings_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>

#include "ui/text.h"

namespace ui {
namespace {

constexpr int gapHeight = 10;

QString plainText(QString text) {
    text.remove(u'&');
    return text.endsWith(u':') ? text.chopped(1) : text;
}

QString translatedLabel(const char* label) {
    return label == nullptr || *label == '\0' ? QString() : translated(label);
}

}  // namespace

QComboBox* makePopup(const std::vector<Choice>& choices, QWidget* parent) {
    auto* popup = new QComboBox(parent);
    for (const Choice& choice : choices) {
        if (choice.title == nullptr) {
            popup->insertSeparator(popup->count());
        } else {
            popup->addItem(
                *choice.title == '\0' ? QLocale().toString(choice.value) : translated(choice.title),
                choice.value);
        }
    }
    return popup;
}

SettingsPage::SettingsPage(const SettingsContext& context, QWidget* parent)
    : QWidget(parent), context_(context), form_(new QFormLayout(this)) {
    form_->setContentsMargins(24, 20, 24, 20);
    form_->setHorizontalSpacing(10);
    form_->setVerticalSpacing(8);
    form_->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form_->setFormAlignment(Qt::AlignHCenter | Qt::AlignTop);
    form_->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form_->setRowWrapPolicy(QFormLayout::DontWrapRows);
}

QCheckBox* SettingsPage::addSwitch(const char* label, const char* title,
                                   const platform::Setting<bool>& setting) {
    auto* box = new QCheckBox(translated(title), this);
    context_.binder.bind(box, setting);
    addRow(label, box);
    return box;
}

QComboBox* SettingsPage::addPopup(const char* label, const std::vector<Choice>& choices,
                                  const platform::Setting<qint64>& setting,
                                  const SettingsBinder::Reading& reading) {
    QComboBox* popup = makePopup(choices, this);
    context_.binder.bind(popup, setting, reading);
    addRow(label, popup);
    return popup;
}

QLineEdit* SettingsPage::addField(const char* label, const platform::Setting<QString>& setting,
                                  const char* placeholder) {
    auto* field = new QLineEdit(this);
    field->setPlaceholderText(translated(placeholder));
    context_.binder.bind(field, setting);
    addRow(label, field);
    return field;
}

void SettingsPage::addRow(const char* label, QWidget* control) {
    const QString text = translatedLabel(label);
    form_->addRow(text, control);
    if (control->accessibleName().isEmpty() && qobject_cast<QCheckBox*>(control) == nullptr) {
        control->setAccessibleName(plainText(text));
    }
}

void SettingsPage::addRow(const char* label, const std::vector<QWidget*>& controls) {
    auto* row = new QHBoxLayout;
    row->setSpacing(6);
    for (QWidget* control : controls) {
        row->addWidget(control);
    }
    row->addStretch();
    auto* title = new QLabel(translatedLabel(label), this);
    title->setBuddy(controls.front());
    form_->addRow(title, row);
}

QLabel* SettingsPage::addNote(const char* text) {
    auto* note = new QLabel(translated(text), this);
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    note->setFont(small);
    note->setWordWrap(true);
    note->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    form_->addRow(QString(), note);
    return note;
}

void SettingsPage::addGap() {
    form_->addItem(new QSpacerItem(0, gapHeight, QSizePolicy::Minimum, QSizePolicy::Fixed));
}

void SettingsPage::setRowVisible(QWidget* control, bool isVisible) {
    form_->setRowVisible(control, isVisible);
    Q_EMIT heightChanged();
}

int SettingsPage::heightForPageWidth(int width) const {
    return form_->hasHeightForWidth() ? form_->totalHeightForWidth(width)
                                      : form_->totalSizeHint().height();
}

}  // namespace ui
