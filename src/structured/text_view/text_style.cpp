#include "structured/text_view/text_style.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "structured/settings.h"

namespace structured {

double editorFontSize(const platform::UserDefaults& defaults) {
    constexpr double smallest = 8;
    constexpr double largest = 50;
    constexpr double whenNoneIsSet = 12;
    const double size = defaults.get(settings::fontSize);
    if (!(size >= double{std::numeric_limits<float>::epsilon()})) {
        return whenNoneIsSet;
    }
    return std::clamp(size, smallest, largest);
}

TextStyle editorTextStyle(const platform::UserDefaults& defaults, double tabWidth,
                          DQDetectedFormat format) {
    TextStyle style;
    style.fontSize = editorFontSize(defaults);
    if (defaults.get(settings::tightLayout))
        return style;
    style.lineSpacing = std::round(0.1 * style.fontSize);
    style.headIndent = std::round(0.5 * tabWidth);
    if (isJSON(format))
        style.paragraphSpacing = std::round(0.2 * style.fontSize);
    return style;
}

}  // namespace structured
