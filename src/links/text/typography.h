#pragma once

#include <QString>

namespace links {

[[nodiscard]] QString ellipsisString();    ///< U+2026
[[nodiscard]] QString dashString();        ///< U+2014
[[nodiscard]] QString spacedDashString();  ///< The dash between blanks.
/// `text` with dashes between blanks in place of hyphens there.
[[nodiscard]] QString stringWithDashesForHyphens(QString text);
[[nodiscard]] QString bulletString();                    ///< U+2022
[[nodiscard]] QString spacedBulletString();              ///< The bullet and one blank.
[[nodiscard]] QString dotString();                       ///< U+00B7
[[nodiscard]] QString rightTriangleArrowString();        ///< U+25B8
[[nodiscard]] QString spacedRightTriangleArrowString();  ///< The arrow between blanks.

}  // namespace links
