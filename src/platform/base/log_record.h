#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>

#include "platform/base/log.h"

namespace platform {

/// A line as it was logged.
struct LogRecord {
    std::int64_t microseconds = 0;  ///< Since 1970, UTC.
    LogLevel level = LogLevel::Info;
    QString line;
};

/// Who logged a line.
struct LogOrigin {
    qint64 processID = 0;
    QString path;  ///< Of the program.
};

[[nodiscard]] LogOrigin ownLogOrigin();

/// UTC with microseconds, as `yyyy-MM-dd HH:mm:ss.SSSSSSZ` reads it. Texts of this form order as
/// their moments do.
[[nodiscard]] QByteArray logTimestamp(std::int64_t microseconds);
[[nodiscard]] std::int64_t logClock();

/// The word in brackets that a component puts before its lines, behind "[Debug] "; empty: none.
[[nodiscard]] QString logCategory(const QString& line);

/// "Debug", "Default", "Error" or "Fault".
[[nodiscard]] QByteArray logMessageType(LogLevel level);

/// One JSON object on one line, with its line feed; the key "timestamp" is the first, so that an
/// entry behind one that was cut short by a crash can be found. Of a message longer than 16 KiB
/// characters, the beginning.
[[nodiscard]] QByteArray encodedLogRecord(const LogRecord& record,
                                          const LogOrigin& origin = ownLogOrigin());

}  // namespace platform
