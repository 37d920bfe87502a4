#pragma once

#include "engine/lifecycle/download.h"

class QWidget;

namespace app {
class DQMainController;
}

namespace ui {

/// Asks what the file of the download is to add up to, and shows what is known of that already. Not
/// modal to the program: the text may have to be fetched from elsewhere.
void showChecksumPanel(QWidget& window, app::DQMainController& controller,
                       const engine::DownloadPtr& download);

}  // namespace ui
