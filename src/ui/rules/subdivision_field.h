#pragma once

#include <QWidget>

#include "platform/base/user_defaults.h"

class QComboBox;
class QLabel;

namespace ui {

class SettingsBinder;

/// The date format of subfolders: a text field with suggestions, and below it what it makes today.
class SubdivisionField final : public QWidget {
    Q_OBJECT

public:
    /// `binder` outlives the field. The key of the setting goes when the field is emptied.
    SubdivisionField(const platform::Setting<QString>& setting, SettingsBinder& binder,
                     QWidget* parent);

private:
    void addSuggestions(bool allowsNestedFolders);
    void showExample(const QString& format);

    QComboBox* field_;
    QLabel* example_;
};

}  // namespace ui
