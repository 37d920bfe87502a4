#pragma once

#include "app/intake/pasteboard.h"

class QMimeData;

namespace ui {

/// What a clipboard or a drag holds, in the core's terms.
[[nodiscard]] app::Pasteboard pasteboardFromMimeData(const QMimeData& data);

/// By its formats alone, since asking the other program for its data while it drags takes time.
[[nodiscard]] bool mayHoldAddresses(const QMimeData& data);

/// Paths of the local files among its addresses.
[[nodiscard]] QStringList localPathsFromMimeData(const QMimeData& data);

}  // namespace ui
