#include "ui/settings/settings_binder.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QLocale>

namespace ui {
namespace {

/// Marks the item that stands for a value which the popup does not offer.
constexpr int foreignValueRole = Qt::UserRole + 1;

void removeForeignValue(QComboBox& popup) {
    const int foreign = popup.findData(true, foreignValueRole);
    if (foreign >= 0) {
        popup.removeItem(foreign);
    }
}

}  // namespace

void selectPopupValue(QComboBox& popup, qint64 value) {
    if (popup.currentData() == QVariant(value)) {
        return;
    }
    removeForeignValue(popup);
    int index = popup.findData(value);
    if (index < 0) {
        popup.addItem(QLocale().toString(value), value);
        index = popup.count() - 1;
        popup.setItemData(index, true, foreignValueRole);
    }
    popup.setCurrentIndex(index);
}

SettingsBinder::SettingsBinder(platform::UserDefaults& defaults, QObject* parent)
    : QObject(parent),
      defaults_(defaults),
      observation_(defaults.observe([this](const QString& key) { Q_EMIT changed(key); })) {}

void SettingsBinder::follow(const QStringList& keys, QObject* context,
                            const std::function<void()>& show) {
    show();
    connect(this, &SettingsBinder::changed, context, [keys, show](const QString& key) {
        if (keys.contains(key)) {
            show();
        }
    });
}

void SettingsBinder::bind(QCheckBox* box, const platform::Setting<bool>& setting,
                          const Store& store) {
    const auto show = [this, box, &setting] { box->setChecked(defaults_.get(setting)); };
    box->setObjectName(setting.name());
    follow({setting.name()}, box, show);
    connect(box, &QCheckBox::clicked, this, [this, &setting, show, store](bool isOn) {
        if (store) {
            store(isOn);
        } else {
            defaults_.set(setting, isOn);
        }
        show();  // A value given for this run only stays in force.
    });
}

void SettingsBinder::bind(QComboBox* popup, const platform::Setting<qint64>& setting,
                          const Reading& reading) {
    const auto show = [this, popup, &setting, reading] {
        const qint64 value = defaults_.get(setting);
        selectPopupValue(*popup, reading ? reading(value) : value);
    };
    popup->setObjectName(setting.name());
    follow({setting.name()}, popup, show);
    connect(popup, &QComboBox::activated, this, [this, popup, &setting, show] {
        defaults_.set(setting, popup->currentData().toLongLong());
        show();
    });
}

void SettingsBinder::bind(QLineEdit* field, const platform::Setting<QString>& setting) {
    field->setObjectName(setting.name());
    follow({setting.name()}, field, [this, field, &setting] {
        // While the user types a blank between two words nothing has changed.
        const QString text = defaults_.get(setting);
        if (field->text().trimmed() != text.trimmed()) {
            field->setText(text);
        }
    });
    connect(field, &QLineEdit::textEdited, this, [this, &setting](const QString& text) {
        const QString trimmed = text.trimmed();
        defaults_.setObject(setting.name(), trimmed.isEmpty() ? QVariant() : trimmed);
    });
}

}  // namespace ui
