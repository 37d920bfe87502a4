#pragma once

#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "platform/base/log.h"
#include "platform/base/log_record.h"
#include "platform/base/log_spool.h"

namespace platform {

/// Where records end up, called on the writer's thread; may wait.
using LogOutput = std::function<void(const LogRecord& record)>;

/// Takes lines at once and writes them on a thread of its own. While that thread waits for a disk,
/// up to `mostWaiting` lines are kept; how many more there were is written when it goes on. With a
/// spool, a kill loses none that it has room for but the one that is just being logged.
class LogWriter final : public LogSink {
public:
    static constexpr std::size_t mostWaiting = 10'000;

    explicit LogWriter(std::vector<LogOutput> outputs, std::unique_ptr<LogSpool> spool = nullptr);
    /// Ends the thread when all is written, or gives the rest up after `patience`.
    ~LogWriter() override;
    LogWriter(const LogWriter&) = delete;
    LogWriter& operator=(const LogWriter&) = delete;

    void write(LogLevel level, const QString& line) override;

private:
    struct Shared;
    const std::shared_ptr<Shared> shared_;
    std::unique_ptr<std::thread> thread_;
};

/// Writes to the store in `logStoreFolder` and to the journal where it runs, for as long as it
/// lives. Made by a composition root, first of all and gone last.
class ProgramLog {
public:
    ProgramLog();
    ~ProgramLog();
    ProgramLog(const ProgramLog&) = delete;
    ProgramLog& operator=(const ProgramLog&) = delete;

private:
    std::shared_ptr<LogWriter> writer_;
};

/// Lines for the store in `folder`.
[[nodiscard]] LogOutput logStoreOutput(const QString& folder);
/// Brings the lines that killed processes have left in `runtimeFolder` into the store in `folder`.
void recoverLogLines(const QString& folder);
/// The journal, by its native protocol. Null where it does not run.
[[nodiscard]] LogOutput journalOutput();

}  // namespace platform
