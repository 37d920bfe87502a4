#include "structured/text_view/syntax_highlighting.h"

namespace structured {

std::optional<SyntaxColor> syntaxColor(SyntaxRole role, bool inDarkMode) {
    switch (role) {
        case SyntaxRole::Tag:
            return inDarkMode ? SyntaxColor{0.7, 0.5, 0.9, 1} : SyntaxColor{0.5, 0.3, 0.7, 1};
        case SyntaxRole::Value:
            return inDarkMode ? SyntaxColor{0.2, 0.5, 1, 1} : SyntaxColor{0, 0.4, 0.8, 1};
        case SyntaxRole::TrueBoolean:
            return inDarkMode ? SyntaxColor{0.3, 0.8, 0.3, 1} : SyntaxColor{0, 0.55, 0, 1};
        case SyntaxRole::FalseBoolean:
            return inDarkMode ? SyntaxColor{1, 0.3, 0.3, 1} : SyntaxColor{0.8, 0, 0, 1};
        case SyntaxRole::OtherCode:
        case SyntaxRole::InvalidCode:
            return inDarkMode ? SyntaxColor{1, 1, 1, 0.5} : SyntaxColor{0, 0, 0, 0.5};
        case SyntaxRole::Key:
        case SyntaxRole::Disabled:
            break;
    }
    return std::nullopt;
}

}  // namespace structured
