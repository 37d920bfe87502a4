#pragma once

#include <QString>

namespace links {

/// Nobody sees it: zero-width, a direction mark, a soft hyphen or a byte order mark.
[[nodiscard]] bool isInvisible(QChar unit);
/// A straight or typographic quotation mark, or a back quote.
[[nodiscard]] bool isQuotationMark(QChar unit);
/// Punctuation of Chinese and Japanese, which stands in no address.
[[nodiscard]] bool isWidePunctuation(QChar unit);
/// What ends a sentence or a clause behind an address.
[[nodiscard]] bool isTrailingPunctuation(QChar unit);

/// Without whitespace and invisible marks at both ends.
[[nodiscard]] QStringView withoutMarks(QStringView text);
/// Where the first `{...}` group with blanks in it that begins at `position` ends, one behind the
/// closing brace; `position` itself if there is none.
[[nodiscard]] qsizetype endOfRangeGroup(QStringView text, qsizetype position);
/// Whether the last component of an address's path has an extension as files have.
[[nodiscard]] bool endsInExtension(QStringView address);

}  // namespace links
