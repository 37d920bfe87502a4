#pragma once

#include <QString>

class QAction;
class QMenu;

namespace ui {

/// A text that comes from elsewhere, fit for a menu: on one line, without mnemonics, and shortened
/// in the middle to about `mostCharacters`.
[[nodiscard]] QString menuText(const QString& text, int mostCharacters = 60);

/// A line in small type that only tells something.
QAction* addInertItem(QMenu& menu, const QString& text);

}  // namespace ui
