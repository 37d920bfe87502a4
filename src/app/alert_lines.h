#pragma once

#include <QStringList>

namespace app {

/// What an alert shows of `lines`: all of up to ten, of more the first nine and "(n more)", where n
/// is one lower than what is left, as it always was.
[[nodiscard]] QString alertLines(const QStringList& lines);

}  // namespace app
