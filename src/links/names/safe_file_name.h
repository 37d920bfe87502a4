#pragma once

#include <QString>

namespace links {

/// The longest name that the file systems of Linux take, in bytes of UTF-8.
inline constexpr qsizetype maximumFileNameBytes = 255;

/// Room for what the engine appends to the name of a partial file: ".orlop-xf-" and a number, and
/// behind that ".orlop-rf-" and a number.
inline constexpr qsizetype partialFileSuffixBytes = 48;

/// A name from anywhere made usable as exactly one component inside a folder: `cleanFilename`, and
/// beyond that
/// - no control characters, no line or paragraph separators and no marks that turn the direction of
///   writing (by which "exe.gpj" can pose as a picture);
/// - never empty, "." or "..": such a name becomes "-";
/// - no name that the program would take for one of its own: in ".orlopinfo" at the end,
///   ".orlop-xf-" and ".orlop-rf-" the dot becomes "_", and what is still negligible (see
///   `isNegligibleFilename`) begins with "-";
/// - at most 255 bytes of UTF-8 less `reservedBytes`, see `fittedFileName`.
///
/// To be applied right where a path component is made, after whatever else built the name. Applying
/// it again changes nothing.
[[nodiscard]] QString safeFileName(const QString& name, qsizetype reservedBytes = 0);

/// `name` as it may be shown: without the marks that never come into a file's name, see above, so
/// that no row shows another name than the file will have. Never empty.
[[nodiscard]] QString nameWithoutMarks(QString name);

/// `name` cut to 255 bytes of UTF-8 less `reservedBytes`, at the boundary of a character. The
/// extension is kept unless it is longer than 32 bytes, and blanks and dots at the cut go.
[[nodiscard]] QString fittedFileName(const QString& name, qsizetype reservedBytes = 0);

/// The longest start of `text` that has no more than `bytes` in UTF-8.
[[nodiscard]] QStringView prefixOfUtf8Length(QStringView text, qsizetype bytes);
[[nodiscard]] qsizetype utf8Length(QStringView text);

}  // namespace links
