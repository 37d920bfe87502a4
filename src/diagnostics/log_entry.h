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

    /// Whether something went wrong.
    [[nodiscard]] bool isProblem() const;
    /// As it is saved: strings and numbers.
    [[nodiscard]] QVariantMap propertyList() const;
};

/// Selects entries that are problems.
[[nodiscard]] QString problemPredicate();

/// The moment that a "timestamp" means: `yyyy-MM-dd HH:mm:ss.SSSSSSZ`, the zone as +0000.
[[nodiscard]] std::optional<std::int64_t> parsedLogTimestamp(QByteArrayView text);

/// Makes entries of what was read, sharing the texts that return in nearly all of them.
class LogEntryMaker {
public:
    [[nodiscard]] LogEntry entry(const structured::FlatObject& object);

private:
    /// A text as it was written, and what it means.
    struct Known {
        QByteArray written;
        QString text;
    };

    /// `last`: what the field was before, which it mostly is again.
    const QString& shared(QByteArrayView written, Known& last);

    QHash<QByteArray, QString> texts_;
    Known process_, sender_, type_, category_;
};

}  // namespace diagnostics
