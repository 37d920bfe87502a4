#pragma once

class QDialog;
class QWidget;

namespace ui {

/// A dialog of the window, visible and not modal, in which the user has entered something that is
/// neither taken nor cancelled. Null: there is none.
[[nodiscard]] QDialog* unfinishedEntry(const QWidget& window);

}  // namespace ui
