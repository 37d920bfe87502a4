#pragma once

#include <QString>
#include <optional>

#include "platform/base/user_defaults.h"

namespace app {

/// What is said when a button of the toolbar is clicked that is a short cut to the settings.
struct Explanation {
    QString message, text;
};

/// For the section "Speed" or "Schedule" of the settings. Nothing: the user does not want it (any
/// more), or there is none for that section.
[[nodiscard]] std::optional<Explanation> toolbarButtonExplanation(
    const platform::UserDefaults& defaults, const QString& section);
void suppressToolbarButtonExplanation(platform::UserDefaults& defaults, const QString& section);

}  // namespace app
