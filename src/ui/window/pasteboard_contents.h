#pragma once

#include "app/intake/pasteboard.h"

class QMimeData;

namespace ui {

/// What a clipboard or a drag holds, in the core's terms.
[[nodiscard]] app::Pasteboard pasteboardFromMimeData(const QMimeData& data);

/// Whether there is anything but blanks to take in. Asks the other program for its data if it says
/// that it has some, which takes time: not at each move of a drag.
[[nodiscard]] bool mayHoldAddresses(const QMimeData& data);

/// Paths of the local files among its addresses.
[[nodiscard]] QStringList localPathsFromMimeData(const QMimeData& data);

}  // namespace ui
