#pragma once

#include "app/queue/download_order.h"

class QWidget;

namespace app {
class DQMainController;
}

namespace ui {

/// Asks how fast these downloads, each for itself, may come. Not modal; the controller outlives it.
void showSpeedLimitPanel(QWidget& window, app::DQMainController& controller,
                         const engine::Downloads& downloads);

}  // namespace ui
