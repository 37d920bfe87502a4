#pragma once

class QWidget;

namespace ui {

/// Says what the program is and which version of it runs, until the user closes it.
void showAboutPanel(QWidget& window);

}  // namespace ui
