#pragma once

#include <QString>

namespace links {

/// The user's locale for numbers and for dates in ICU's spelling ("de_CH"), from the environment
/// (LC_ALL, then LC_NUMERIC or LC_TIME, then LANG; see locale(7)). "C" and "POSIX" are taken for
/// "en_US". Any thread.
[[nodiscard]] QString numberLocaleName();
[[nodiscard]] QString dateLocaleName();

}  // namespace links
