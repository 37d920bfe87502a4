#pragma once

#include <QHash>
#include <QWidget>
#include <vector>

#include "ui/settings/settings_binder.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;

namespace app {
class DQMainController;
}

namespace ui {

/// What every section of the settings window is made with.
struct SettingsContext {
    app::DQMainController& controller;
    platform::UserDefaults& defaults;
    SettingsBinder& binder;
    /// Goes to another section, also one that the toolbar does not show.
    std::function<void(const QString& identifier)> showSection;
};

struct Choice {
    const char* title = nullptr;  ///< English. Null: a separator. Empty: the value itself.
    qint64 value = 0;
};

/// One section of the settings window: rows of a label and a control, from top to bottom. Texts are
/// English; an empty label leaves the control below the one before.
class SettingsPage final : public QWidget {
    Q_OBJECT

public:
    SettingsPage(const SettingsContext& context, QWidget* parent);

    QCheckBox* addSwitch(const char* label, const char* title,
                         const platform::Setting<bool>& setting,
                         const SettingsBinder::Store& store = {});
    QComboBox* addPopup(const char* label, const std::vector<Choice>& choices,
                        const platform::Setting<qint64>& setting,
                        const SettingsBinder::Reading& reading = {});
    QLineEdit* addField(const char* label, const platform::Setting<QString>& setting);
    /// The label is the control's accessible name where it has none.
    void addRow(const char* label, QWidget* control);
    /// Several controls in one row, of which the first is the label's.
    void addRow(const char* label, const std::vector<QWidget*>& controls);
    /// Without a label, as wide as the page.
    void addWide(QWidget* control);
    /// An explanation of the row before.
    QLabel* addNote(const char* text);
    /// Space before the next group of rows.
    void addGap();

    void setRowVisible(QWidget* control, bool isVisible);

    /// In device-independent pixels, for the whole page to be seen.
    [[nodiscard]] int heightForPageWidth(int width) const;
    /// Whether something in it has a use for more height.
    [[nodiscard]] bool canGrow() const;

Q_SIGNALS:
    /// Rows came, went or changed their height.
    void heightChanged();

protected:
    bool event(QEvent* event) override;

private:
    void addLabelled(const QString& text, QWidget* control, QWidget* buddy);

    const SettingsContext& context_;
    QGridLayout* grid_;
    /// Of rows, by their control; null: the row has none.
    QHash<QWidget*, QLabel*> labels_;
};

/// A popup with items for the choices, bound to nothing.
[[nodiscard]] QComboBox* makePopup(const std::vector<Choice>& choices, QWidget* parent);

}  // namespace ui
