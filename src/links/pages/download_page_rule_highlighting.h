#pragma once

#include <QString>

namespace structured {
struct SyntaxHighlighting;
}

namespace links {

/// Marks the "title:" at the start of a "Use Source Name" value, which is no part of its pattern.
void markTitlePrefixes(const QString& text, structured::SyntaxHighlighting& highlighting);

}  // namespace links
