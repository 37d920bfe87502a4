#pragma once

#include <QString>

class QWidget;

namespace ui {

/// Tells assistive technologies what the control is for, also where a part of it has the focus.
void setAccessibleName(QWidget& control, const QString& name);

/// Lets plain widgets that are windows be told as windows; to Qt they are mere containers.
void tellWindowsAsWindows();

}  // namespace ui
