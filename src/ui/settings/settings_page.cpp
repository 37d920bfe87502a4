#include "ui/settings/settings_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <algorithm>

#include "ui/accessibility.h"
#include "ui/settings/note.h"
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
    : QWidget(parent), context_(context), grid_(new QGridLayout(this)) {
    grid_->setContentsMargins(24, 20, 24, 20);
    grid_->setHorizontalSpacing(10);
    grid_->setVerticalSpacing(8);
    grid_->setColumnStretch(1, 1);
}

QCheckBox* SettingsPage::addSwitch(const char* label, const char* title,
                                   const platform::Setting<bool>& setting,
                                   const SettingsBinder::Store& store) {
    auto* box = new QCheckBox(translated(title), this);
    context_.binder.bind(box, setting, store);
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

QLineEdit* SettingsPage::addField(const char* label, const platform::Setting<QString>& setting) {
    auto* field = new QLineEdit(this);
    context_.binder.bind(field, setting);
    addRow(label, field);
    return field;
}

void SettingsPage::addRow(const char* label, QWidget* control) {
    const QString text = translatedLabel(label);
    QWidget* focused = control->focusProxy() != nullptr ? control->focusProxy() : control;
    if (focused->accessibleName().isEmpty() && qobject_cast<QCheckBox*>(focused) == nullptr) {
        ui::setAccessibleName(*focused, plainText(text));
    }
    // A label passes the focus on to no widget that only has a proxy for it.
    addLabelled(text, control, focused);
}

void SettingsPage::addRow(const char* label, const std::vector<QWidget*>& controls) {
    auto* box = new QWidget(this);
    auto* row = new QHBoxLayout(box);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    for (QWidget* control : controls) {
        row->addWidget(control);
    }
    row->addStretch();
    addLabelled(translatedLabel(label), box, controls.front());
}

void SettingsPage::addLabelled(const QString& text, QWidget* control, QWidget* buddy) {
    const int row = grid_->rowCount();
    QLabel* label = nullptr;
    if (!text.isEmpty()) {
        // Beside a tall control the label stands at the height of its first line.
        const int lineHeight = QComboBox(this).sizeHint().height();
        label = new QLabel(text, this);
        label->setBuddy(buddy);
        label->setMinimumHeight(std::min(lineHeight, control->sizeHint().height()));
        grid_->addWidget(label, row, 0, Qt::AlignRight | Qt::AlignTop);
    }
    const bool grows = (control->sizePolicy().horizontalPolicy() & QSizePolicy::ExpandFlag) != 0;
    grid_->addWidget(control, row, 1, grows ? Qt::Alignment() : Qt::AlignLeft);
    labels_.insert(control, label);
}

void SettingsPage::addWide(QWidget* control) {
    grid_->addWidget(control, grid_->rowCount(), 0, 1, 2);
}

QLabel* SettingsPage::addNote(const char* text) {
    QLabel* note = makeNote(translated(text), this);
    grid_->addWidget(note, grid_->rowCount(), 1);
    return note;
}

void SettingsPage::addGap() {
    grid_->addItem(new QSpacerItem(0, gapHeight, QSizePolicy::Minimum, QSizePolicy::Fixed),
                   grid_->rowCount(), 0);
}

void SettingsPage::setRowVisible(QWidget* control, bool isVisible) {
    control->setVisible(isVisible);
    if (QLabel* label = labels_.value(control)) {
        label->setVisible(isVisible);
    }
    updateGeometry();
}

int SettingsPage::heightForPageWidth(int width) const {
    return grid_->hasHeightForWidth() ? grid_->totalHeightForWidth(width)
                                      : grid_->totalSizeHint().height();
}

bool SettingsPage::canGrow() const {
    return grid_->expandingDirections().testFlag(Qt::Vertical);
}

bool SettingsPage::event(QEvent* event) {
    const bool result = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        Q_EMIT heightChanged();
    }
    return result;
}

}  // namespace ui
