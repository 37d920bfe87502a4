#include "structured/text_view/json_text_view_validator.h"

namespace structured {

QVariant DQJSONTextViewValidator::validateObjectValue(const QVariant& object, DQJSONTextView*) {
    return object;
}

void DQJSONTextViewValidator::didApplySyntaxHighlightingToTextStorage(const QString&,
                                                                      SyntaxHighlighting&,
                                                                      DQJSONTextView&) {}

void DQJSONTextViewValidator::didChangeObjectValueForTextView(DQJSONTextView&) {}

}  // namespace structured
