#pragma once

#include <QString>

namespace links {

/// A name hidden from onlookers and still known to its owner: its first character (in upper case
/// with `convertToUppercase`), an ellipsis, and of the rest the digits with a dot for everything
/// else. With `preserveExtension` the extension is shown.
[[nodiscard]] QString anonymizedStringPreservingExtension(const QString& name,
                                                          bool preserveExtension,
                                                          bool convertToUppercase);

}  // namespace links
