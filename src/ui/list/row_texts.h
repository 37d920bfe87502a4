#pragma once

#include <QString>

namespace app {
class StatusTexts;
}
namespace engine {
class DQDownload;
}

namespace ui {

/// Address, state and date of a row.
[[nodiscard]] QString rowToolTip(const app::StatusTexts& texts, engine::DQDownload& download);

/// What a screen reader says of a row: name and state.
[[nodiscard]] QString accessibleRowText(const app::StatusTexts& texts,
                                        engine::DQDownload& download);

}  // namespace ui
