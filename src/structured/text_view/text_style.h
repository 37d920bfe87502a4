#pragma once

#include "structured/text_view/detected_format.h"

namespace platform {
class UserDefaults;
}

namespace structured {

/// How the structured text editor sets its text, in points, all but the font size rounded.
struct TextStyle {
    double fontSize = 0;
    double lineSpacing = 0;
    /// Of the second and further lines of a paragraph.
    double headIndent = 0;
    double paragraphSpacing = 0;

    friend bool operator==(const TextStyle&, const TextStyle&) = default;
};

/// The size that the user has set, from 8 to 50; 12 if none is.
[[nodiscard]] double editorFontSize(const platform::UserDefaults& defaults);

/// `tabWidth`: of a tab character in the editor's font.
[[nodiscard]] TextStyle editorTextStyle(const platform::UserDefaults& defaults, double tabWidth,
                                        DQDetectedFormat format);

}  // namespace structured
