#pragma once

#include "app/front_end.h"

namespace ui {

/// The desktop's clipboard.
class Clipboard final : public app::Clipboard {
public:
    void copy(const app::Pasteboard& pasteboard) override;
    [[nodiscard]] static app::Pasteboard contents();
};

}  // namespace ui
