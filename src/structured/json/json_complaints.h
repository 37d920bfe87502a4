#pragma once

#include <string_view>

namespace structured {

/// What to tell a person about a text that the JSON parser refused.
struct JsonComplaint {
    /// The key of a localised text.
    const char* text;
    /// Whether it is about the whole of the token that was read last, or about its last byte.
    bool isAboutToken;
};

/// Puts the parser's own message into plain words.
[[nodiscard]] JsonComplaint jsonComplaint(std::string_view parserMessage);

}  // namespace structured
