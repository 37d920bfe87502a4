#pragma once

namespace structured {

/// In which of the four spellings a text was found to be written.
enum class DQDetectedFormat : unsigned {
    None = 0,           ///< Nothing parsed yet.
    XML = 1,            ///< A whole XML property list.
    XMLShorthand = 2,   ///< The contents of a property list's root dictionary.
    JSON = 3,           ///< Strict JSON.
    JSONShorthand = 4,  ///< JSON without commas at line ends, with or without its outer braces.
};

[[nodiscard]] constexpr bool isJSON(DQDetectedFormat format) {
    return format == DQDetectedFormat::JSON || format == DQDetectedFormat::JSONShorthand;
}
[[nodiscard]] constexpr bool isXML(DQDetectedFormat format) {
    return format == DQDetectedFormat::XML || format == DQDetectedFormat::XMLShorthand;
}

}  // namespace structured
