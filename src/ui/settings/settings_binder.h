#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

#include "platform/base/user_defaults.h"

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace ui {

/// Ties controls to settings: a control shows the value in force, stores what the user makes of it
/// at once, and follows changes made elsewhere. It bears the name of its key as its object name.
class SettingsBinder final : public QObject {
    Q_OBJECT

public:
    /// What a popup shows for a stored value.
    using Reading = std::function<qint64(qint64)>;
    /// What is done with the state of a check box where more than storing it is to happen.
    using Store = std::function<void(bool)>;

    explicit SettingsBinder(platform::UserDefaults& defaults, QObject* parent = nullptr);

    void bind(QCheckBox* box, const platform::Setting<bool>& setting, const Store& store = {});
    /// The data of the popup's items are the values. A value that no item stands for gets an item
    /// of its own as long as it is in force.
    void bind(QComboBox* popup, const platform::Setting<qint64>& setting,
              const Reading& reading = {});
    /// Stored without blanks around it; an empty text removes the key.
    void bind(QLineEdit* field, const platform::Setting<QString>& setting);

    /// Calls `show` now and after each change of one of the keys, as long as `context` lives.
    void follow(const QStringList& keys, QObject* context, const std::function<void()>& show);

    [[nodiscard]] platform::UserDefaults& defaults() const { return defaults_; }

Q_SIGNALS:
    void changed(const QString& key);

private:
    platform::UserDefaults& defaults_;
    platform::Observation observation_;
};

/// Selects the item that stands for `value`, adding one titled by the number if none does.
void selectPopupValue(QComboBox& popup, qint64 value);

}  // namespace ui
