#pragma once

#include <QString>
#include <atomic>
#include <concepts>
#include <memory>

namespace platform {

enum class LogLevel { Debug, Info, Warning, Error };

/// Where lines go. Called from any thread, one line at a time. A sink must not log, and returns at
/// once: whoever logs does not wait for a disk.
class LogSink {
public:
    virtual ~LogSink() = default;
    virtual void write(LogLevel level, const QString& line) = 0;
};

/// Hands a line to the sinks, without the secrets in it (see `withoutSecrets`). Any thread.
void log(const QString& line, LogLevel level = LogLevel::Info);

namespace detail {
inline std::atomic<bool> isDebugLogEnabled = false;
}

[[nodiscard]] inline bool isDebugLogEnabled() {
    return detail::isDebugLogEnabled.load(std::memory_order_relaxed);
}
/// Read from the defaults by the composition root and whenever "DQDebugLog" changes. Any thread.
void setDebugLogEnabled(bool enabled);

/// "[Debug] " and the line, whether debug lines are wanted or not: for those who know better.
void writeDebugLine(const QString& line);

/// Writes what `line` answers if "DQDebugLog" is on. `line` is not called otherwise.
template <std::invocable Line>
void debugLog(Line&& line) {
    if (isDebugLogEnabled())
        writeDebugLine(line());
}

/// Adds a sink for the life of the process or until `removeLogSink`; null adds none.
void addLogSink(std::shared_ptr<LogSink> sink);
void removeLogSink(const std::shared_ptr<LogSink>& sink);

}  // namespace platform
