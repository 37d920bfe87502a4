#pragma once

#include <QString>

namespace app::terminal {

/// The answer to --help.
[[nodiscard]] QString usageText();

}  // namespace app::terminal
