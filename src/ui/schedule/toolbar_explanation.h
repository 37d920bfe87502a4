#pragma once

#include <QString>
#include <functional>

#include "platform/base/user_defaults.h"

class QWidget;

namespace ui {

/// A button of the toolbar was clicked that is a short cut to the section "Speed" or "Schedule" of
/// the settings: shows that section and says so in a dialog on it, unless the user has seen enough
/// of that. `showSection` brings up the section and answers the settings window; null: there is
/// none. False: nothing was shown.
bool showToolbarButtonExplanation(const QString& section, platform::UserDefaults& defaults,
                                  const std::function<QWidget*(const QString&)>& showSection);

}  // namespace ui
