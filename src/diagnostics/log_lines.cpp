#include "diagnostics/log_lines.h"

#include <QFile>

#include "diagnostics/log_entry.h"
#include "platform/base/log_store.h"

namespace diagnostics {

using structured::FlatObject;

namespace {

constexpr QByteArrayView beginning = "{\"timestamp\":\"";

bool isWholeLine(FlatObject& object, QByteArrayView line) {
    const qsizetype end = object.read(line);
    return end > 0 && end + structured::jsonBlanks(line.sliced(end)) == line.size();
}

/// Behind a line that was cut short. Inside of a string the beginning would hold backslashes.
bool endsWithEntry(FlatObject& object, QByteArrayView line) {
    const qsizetype last = line.lastIndexOf(beginning);
    return last > 0 && isWholeLine(object, line.sliced(last));
}

}  // namespace

bool takeLines(QByteArrayView text, const TakeLine& take) {
    FlatObject object;
    while (!text.isEmpty()) {
        const qsizetype end = text.indexOf('\n');
        const QByteArrayView line = text.first(end < 0 ? text.size() : end);
        text = text.sliced(end < 0 ? text.size() : end + 1);
        if ((isWholeLine(object, line) || endsWithEntry(object, line)) && !take(object))
            return false;
    }
    return true;
}

void takeStoredLines(const QString& folder, const QByteArray& since, const TakeLine& take) {
    constexpr std::int64_t microsecondsInSecond = 1'000'000;
    const qint64 oldest = parsedLogTimestamp(since).value_or(0) / microsecondsInSecond;
    for (const platform::LogSegment& segment : platform::logSegments(folder)) {
        QFile file(QFile::decodeName(segment.path));
        if (segment.changed < oldest || !file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray text = file.readAll();
        const bool goesOn = takeLines(text, [&](const FlatObject& line) {
            const QByteArrayView time = line.value("timestamp");
            return time.size() < 2 || time.sliced(1, time.size() - 2) < since || take(line);
        });
        if (!goesOn)
            return;
    }
}

}  // namespace diagnostics
