#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

namespace platform {

enum class LogLevel { Debug, Info, Warning, Error };

/// Where lines go: to the journal where it runs, and always to a bounded store of our own.
/// Called from any thread, one line at a time. A sink must not log.
class LogSink {
public:
    virtual ~LogSink() = default;
    virtual void write(LogLevel level, const QString& line) = 0;
};

/// Writes a line to the sinks, but not the passwords of the addresses in it. Any thread.
void log(const QString& line, LogLevel level = LogLevel::Info);

/// Writes "[Debug] " and what `line` answers, only if "DQDebugLog" is on; `line` is not called
/// otherwise.
void debugLog(const std::function<QString()>& line);
[[nodiscard]] bool isDebugLogEnabled();
/// Read from the defaults by the composition root and whenever "DQDebugLog" changes. Any thread.
void setDebugLogEnabled(bool enabled);

/// Adds a sink for the life of the process or until `removeLogSink`.
void addLogSink(std::shared_ptr<LogSink> sink);
void removeLogSink(const std::shared_ptr<LogSink>& sink);

/// Lines in `folder`, one JSON object each, in the form that the log reader takes; when the file
/// passes `maximumBytes` it becomes the older of two and a new one begins, so that the two never
/// hold more than twice that.
[[nodiscard]] std::shared_ptr<LogSink> makeLogStore(const QString& folder, qint64 maximumBytes);
/// The files of the store in `folder` in the order of their lines, whether they exist or not.
/// A line that was cut short by a crash is no JSON and is to be skipped.
[[nodiscard]] QStringList logStoreFiles(const QString& folder);
/// The journal, by its native protocol. Null where it does not run.
[[nodiscard]] std::shared_ptr<LogSink> makeJournalSink();

}  // namespace platform
