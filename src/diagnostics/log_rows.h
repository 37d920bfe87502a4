#pragma once

#include <QDate>
#include <QString>
#include <QStringList>
#include <cstddef>
#include <limits>
#include <memory>
#include <vector>

#include "diagnostics/log_entry.h"

namespace diagnostics {

/// The entries of a reader, in time order.
using LogEntryList = std::vector<std::shared_ptr<const LogEntry>>;

/// No archive read is running.
inline constexpr std::size_t noInsertionIndex = std::numeric_limits<std::int64_t>::max();

/// One line of the log as it is shown.
struct LogRow {
    enum class Kind {
        Marker,  ///< Where past messages end and live ones begin, while the past is read.
        Entry,
    };
    Kind kind = Kind::Entry;
    std::shared_ptr<const LogEntry> entry;
    /// How many equal entries in a row it stands for.
    std::size_t count = 1;
};

/// What is shown of entries: none with an empty message, and with `coalesces` equal ones in a row
/// as one, unless past and live messages meet between them.
[[nodiscard]] std::vector<LogRow> logRows(const LogEntryList& entries, std::size_t insertionIndex,
                                          bool coalesces);

/// The text of an entry, in three parts.
struct LogRowText {
    QString meta;     ///< When, and who: "14:03:22.120 | orlop > ILR: ".
    QString message;  ///< Without hidden prefixes; line feeds are line separators (U+2028).
    QString count;    ///< " (×3)", or empty.

    [[nodiscard]] QString whole() const { return meta + message + count; }
};

/// How rows are worded at one moment.
struct LogWording {
    QDate today;
    bool showsSender = true;
    QStringList hiddenPrefixes;
};

/// Without the day if that is today. `time` in microseconds since 1970.
[[nodiscard]] QString logMomentText(std::int64_t time, const QDate& today);
[[nodiscard]] LogRowText logRowText(const LogRow& row, const LogWording& wording);
[[nodiscard]] QString logMarkerText();

}  // namespace diagnostics
