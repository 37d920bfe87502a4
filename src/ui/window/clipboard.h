#pragma once

#include <functional>

#include "app/front_end.h"

namespace ui {

/// The desktop's clipboard.
class Clipboard final : public app::Clipboard {
public:
    void copy(const app::Pasteboard& pasteboard) override;
    [[nodiscard]] static app::Pasteboard contents();
};

/// Wayland shows the clipboard to nobody but the program with the keyboard: calls `read` when that
/// is this one, or after a second all the same. Elsewhere at once. Main thread.
void whenClipboardCanBeRead(const std::function<void()>& read);

}  // namespace ui
