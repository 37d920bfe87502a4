#pragma once

#include <QString>
#include <QVariant>
#include <optional>
#include <vector>

#include "structured/text_view/detected_format.h"

namespace structured {

/// An entry of the menu that converts the editor's text from one spelling to another.
struct FormatMenuItem {
    enum class State {
        Off,
        On,     ///< The text is exactly what the entry stands for.
        Mixed,  ///< It is in this spelling, but laid out differently.
    };

    bool isSeparator = false;
    /// Not localised.
    QString title;
    State state = State::Off;
    /// The text that replaces the editor's. Nothing: that is the text already.
    std::optional<QString> text;
};

/// The spellings that a value has, for a text of which it is the reading. Spellings that come out
/// the same are shown once.
[[nodiscard]] std::vector<FormatMenuItem> formatMenuItems(const QVariant& object,
                                                          const QString& currentText,
                                                          DQDetectedFormat detectedFormat,
                                                          bool escapesSlashes);

}  // namespace structured
