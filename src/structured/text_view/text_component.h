#pragma once

#include <QString>

#include "structured/text_view/syntax_highlighting.h"
#include "structured/text_view/text_style.h"

namespace structured {

/// What the structured text editor needs of the widget that shows its text. The changes made
/// through here are not to be reported back as the user's.
class TextComponent {
public:
    virtual ~TextComponent() = default;

    [[nodiscard]] virtual QString text() const = 0;
    /// The texts of all selected ranges, joined.
    [[nodiscard]] virtual QString selectedText() const = 0;

    /// Replaces the text and forgets what could be undone.
    virtual void setText(const QString& text) = 0;
    /// Replaces the whole text in one step that can be undone; the insertion point goes to its
    /// end. False: the text may not be changed now.
    [[nodiscard]] virtual bool replaceText(const QString& text) = 0;
    /// The same with what is selected.
    [[nodiscard]] virtual bool replaceSelection(const QString& text) = 0;

    /// Colours the whole text anew.
    virtual void showHighlighting(const SyntaxHighlighting& highlighting) = 0;
    /// In the user's font of fixed pitch, in points.
    [[nodiscard]] virtual double tabWidth(double fontSize) const = 0;
    virtual void showStyle(const TextStyle& style) = 0;

    virtual void presentAlert(const QString& message) = 0;
    virtual void beep() = 0;
};

}  // namespace structured
