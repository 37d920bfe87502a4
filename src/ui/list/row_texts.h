#pragma once

#include <QString>

namespace engine {
class DQDownload;
}

namespace ui {

/// Address, state and date of a row.
[[nodiscard]] QString rowToolTip(engine::DQDownload& download);

/// What a screen reader says of a row: name and state.
[[nodiscard]] QString accessibleRowText(engine::DQDownload& download);

}  // namespace ui
