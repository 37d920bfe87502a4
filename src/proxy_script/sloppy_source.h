#pragma once

#include <QString>

namespace proxy_script {

/// The script with what only old engines take put into words that ours takes (ECMAScript, Annex B):
/// octal numbers and escapes that begin with a plain zero, and comments that hid scripts from
/// browsers. Lines stay where they are, and anything that is no script stays as it is.
[[nodiscard]] QString withoutLegacySyntax(const QString& script);

}  // namespace proxy_script
