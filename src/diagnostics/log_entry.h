#pragma once

#include <QByteArrayView>
#include <QHash>
#include <QString>
#include <QVariantMap>
#include <cstdint>
#include <optional>

#include "structured/json/flat_object.h"

namespace diagnostics {

/// One message of the log.
struct LogEntry {
    /// Microseconds since 1970. Nothing: its timestamp cannot be read; it orders before all others.
    std::optional<std::int64_t> time;
    QString timestamp;
    QString eventMessage;
    QString processImagePath, senderImagePath;
    QString messageType, category;
    std::int64_t processID = 0;

    /// As it is saved: strings and numbers.
    [[nodiscard]] QVariantMap propertyList() const;
};

/// The moment that a "timestamp" means: `yyyy-MM-dd HH:mm:ss.SSSSSSZ`, the zone as +0000.
[[nodiscard]] std::optional<std::int64_t> parsedLogTimestamp(QByteArrayView text);

/// Makes entries of what was read, sharing the texts that return in nearly all of them.
class LogEntryMaker {
public:
    [[nodiscard]] LogEntry entry(const structured::FlatObject& object);

private:
    QString shared(QByteArrayView written);

    QHash<QByteArray, QString> texts_;
};

}  // namespace diagnostics
