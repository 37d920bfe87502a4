#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

namespace platform {

struct TypedValue {
    /// Invalid: see `error`.
    QVariant value;
    QString error;
};

/// The value that all of the words spell: `-bool`, `-int`, `-float` or `-string` and a word;
/// `-array` and values; `-dict` and keys, each with a value; or one word as for `valueFromText`.
/// The values inside an array or dictionary may have types in the same way, and the innermost one
/// takes all words that are left.
[[nodiscard]] TypedValue typedValue(const QStringList& words);

}  // namespace platform
