#pragma once

#include <QDateTime>
#include <QString>

namespace links {

/// All operations take the user's locale if `localeName` (in ICU's spelling) is empty, and the
/// local time zone. Main thread.

/// "just now" (the future included), "5 minutes ago", and from eleven minutes on the day, in words
/// if it is near, and the time.
[[nodiscard]] QString fuzzyDescription(const QDateTime& date, const QDateTime& now,
                                       const QString& localeName = {});

/// The day in full, in words if it is near, as it stands at the beginning of a line: "Yesterday",
/// "Friday, November 20, 2026".
[[nodiscard]] QString dayDescription(const QDateTime& date, const QDateTime& now,
                                     const QString& localeName = {});

/// By a date format of Unicode (UTS #35), as in "yyyy-MM-dd". Empty: the format is malformed.
[[nodiscard]] QString dateStringWithFormat(const QDateTime& date, const QString& format,
                                           const QString& localeName = {});

/// The locale's own format with the fields of a template, as "d. MMMM y" for "yMMMMd" in German.
[[nodiscard]] QString dateFormatFromTemplate(const QString& templateText,
                                             const QString& localeName = {});

}  // namespace links
