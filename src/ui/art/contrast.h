#pragma once

#include <QColor>
#include <initializer_list>

namespace ui {

/// The least contrast of small texts with what they stand on. WCAG 2.1, 1.4.3 asks for 4.5 on the
/// screen, where the strokes of small letters are blended with what is behind them.
inline constexpr double legibleContrast = 5;

/// By how much one colour is lighter than the other, from 1 to 21 (WCAG 2.1). Both opaque.
[[nodiscard]] double contrast(const QColor& a, const QColor& b);

/// `share` of `b`, from 0 to 1, and else `a`. Opaque.
[[nodiscard]] QColor blended(const QColor& a, const QColor& b, double share);

/// `color`, moved as little towards `strongest` as it takes to be read on all of `grounds`.
[[nodiscard]] QColor legible(const QColor& color, const QColor& strongest,
                             std::initializer_list<QColor> grounds);

}  // namespace ui
