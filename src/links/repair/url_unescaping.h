#pragma once

#include <QString>

namespace links {

/// An address that was percent-escaped as a whole, or with `skipRedirectingServices` one that
/// carries an escaped address as a parameter's value, is decoded; and "&amp;" becomes "&". Any
/// thread.
[[nodiscard]] QString unescapedURLString(const QString& text, bool skipRedirectingServices);

/// The whole repair of a candidate: `unescapedURLString`, then the replacement rules of this run
/// (see `ReplacementRules::shared`). Any thread.
[[nodiscard]] QString unescacpedURLStringWithReplacementsApplied(const QString& text,
                                                                 bool skipRedirectingServices);

}  // namespace links
