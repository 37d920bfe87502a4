#pragma once

#include <QString>

namespace app {
class StatusTexts;
}
namespace engine {
class DQDownload;
}

namespace ui {

/// Address, state, date and trouble of a row.
[[nodiscard]] QString rowToolTip(const app::StatusTexts& texts, engine::DQDownload& download);

/// What pressing a button of the row will do; `index` is a `DQDownloadAction`.
[[nodiscard]] QString actionToolTip(const engine::DQDownload& download, unsigned index);

/// In lines of at most `columns` characters, broken between words where that is possible.
[[nodiscard]] QString wrapped(const QString& text, qsizetype columns);

/// What a screen reader says of a row: name, state and trouble.
[[nodiscard]] QString accessibleRowText(const app::StatusTexts& texts,
                                        engine::DQDownload& download);

}  // namespace ui
