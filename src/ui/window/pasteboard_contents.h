#pragma once

#include "app/intake/pasteboard.h"

class QMimeData;

namespace ui {

/// What a clipboard or a drag holds, in the core's terms.
[[nodiscard]] app::Pasteboard pasteboardFromMimeData(const QMimeData& data);

/// Paths of the local files among its addresses.
[[nodiscard]] QStringList localPathsFromMimeData(const QMimeData& data);

}  // namespace ui
