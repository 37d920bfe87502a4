#pragma once

#include <QVariant>

namespace structured {

class DQJSONTextView;
struct SyntaxHighlighting;

/// Decides whether a value is what the editor is used for, and hears of its changes. Each operation
/// may be left as it is.
class DQJSONTextViewValidator {
public:
    virtual ~DQJSONTextViewValidator() = default;

    /// The accepted value. Invalid: refused. `forTextView`: null if no editor asks.
    [[nodiscard]] virtual QVariant validateObjectValue(const QVariant& object,
                                                       DQJSONTextView* forTextView);

    /// May add to a complete highlighting before it is shown.
    virtual void didApplySyntaxHighlightingToTextStorage(const QString& text,
                                                         SyntaxHighlighting& highlighting,
                                                         DQJSONTextView& forTextView);

    /// After each change by the user, conversions included.
    virtual void didChangeObjectValueForTextView(DQJSONTextView& textView);
};

}  // namespace structured
