#pragma once

class QLabel;
class QString;
class QWidget;

namespace ui {

/// An explanation in smaller type, on as many lines as it needs.
[[nodiscard]] QLabel* makeNote(const QString& text, QWidget* parent);

}  // namespace ui
