#pragma once

#include <QVariant>

namespace structured {

/// The values that JSON cannot carry, data and dates, as texts "data:BASE64" and
/// "date:2001-02-03T04:05:06Z".

enum class SpecialValues {
    Unchanged,  ///< There were none.
    Converted,
    Refused,  ///< A text that was there already would read back as one of them; logged.
};

/// Converts throughout the tree, in place. After Refused its state is of no use.
[[nodiscard]] SpecialValues convertSpecialValuesToStrings(QVariant& tree);

/// Converts back what can be, in place; a null becomes 0.
void convertSpecialValuesFromStrings(QVariant& tree);

/// The data or date that a text stands for. Invalid: it stands for itself.
[[nodiscard]] QVariant specialValueFromString(const QString& text);

}  // namespace structured
