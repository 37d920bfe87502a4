#include "platform/base/log_writer.h"

#include <QDir>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/base/log_store.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

/// What outlives the writer if its thread does not come back from a disk.
struct LogWriter::Shared {
    std::vector<LogOutput> outputs;  ///< The thread's alone.
    std::mutex lock;                 ///< Guards all below.
    std::condition_variable hasWork, hasEnded;
    std::vector<LogRecord> waiting;
    std::unique_ptr<LogSpool> spool;  ///< Null: none.
    std::size_t lost = 0;
    bool isIdle = false, isEnding = false, isOver = false;

    /// What has come since the last call; empty: it is time to end.
    std::vector<LogRecord> take() {
        std::unique_lock guard(lock);
        if (spool)
            spool->dropTaken();
        isIdle = true;
        hasWork.wait(guard, [this] { return !waiting.empty() || isEnding; });
        isIdle = false;
        if (lost > 0) {
            waiting.push_back(
                {logClock(), LogLevel::Warning,
                 u"%1 lines were not written: the disk does not keep up"_s.arg(lost)});
            lost = 0;
        }
        if (spool)
            spool->take();
        return std::exchange(waiting, {});
    }

    void run() {
        for (auto records = take(); !records.empty(); records = take()) {
            for (const LogRecord& record : records) {
                for (const LogOutput& output : outputs)
                    output(record);
            }
        }
        const std::lock_guard guard(lock);
        isOver = true;
        hasEnded.notify_all();
    }
};

LogWriter::LogWriter(std::vector<LogOutput> outputs, std::unique_ptr<LogSpool> spool)
    : shared_(std::make_shared<Shared>()) {
    shared_->spool = std::move(spool);
    std::erase_if(outputs, [](const LogOutput& output) { return !output; });
    shared_->outputs = std::move(outputs);
    thread_ = std::make_unique<std::thread>([shared = shared_] { shared->run(); });
}

LogWriter::~LogWriter() {
    constexpr std::chrono::seconds patience(3);
    std::unique_lock guard(shared_->lock);
    shared_->isEnding = true;
    shared_->hasWork.notify_one();
    if (shared_->hasEnded.wait_for(guard, patience, [this] { return shared_->isOver; })) {
        guard.unlock();
        thread_->join();
    } else {
        thread_->detach();
    }
}

void LogWriter::write(LogLevel level, const QString& line) {
    const std::int64_t now = logClock();
    Shared& shared = *shared_;
    const std::lock_guard guard(shared.lock);
    if (shared.waiting.size() >= mostWaiting) {
        ++shared.lost;
        return;
    }
    shared.waiting.push_back({now, level, line});
    if (shared.spool)
        shared.spool->add(shared.waiting.back());
    // Waking costs more than all the rest: once for each time that it sleeps.
    if (std::exchange(shared.isIdle, false))
        shared.hasWork.notify_one();
}

LogOutput logStoreOutput(const QString& folder) {
    return [store = std::make_shared<LogStore>(folder)](const LogRecord& record) {
        store->append(encodedLogRecord(record));
    };
}

namespace {

/// Null: the session has no runtime folder, and what stands in for it lies on a disk, for which
/// whoever logs would wait.
std::unique_ptr<LogSpool> spoolInMemory() {
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR") || !QDir().mkpath(runtimeFolder()))
        return nullptr;
    return LogSpool::make(runtimeFolder());
}

}  // namespace

void recoverLogLines(const QString& folder) {
    LogStore store(folder);
    takeLeftLogLines(runtimeFolder(), [&](const LogRecord& record, const LogOrigin& origin) {
        return store.append(encodedLogRecord(record, origin));
    });
}

ProgramLog::ProgramLog() {
    recoverLogLines(logStoreFolder());
    std::vector<LogOutput> outputs{logStoreOutput(logStoreFolder()), journalOutput()};
    writer_ = std::make_shared<LogWriter>(std::move(outputs), spoolInMemory());
    addLogSink(writer_);
}

ProgramLog::~ProgramLog() {
    removeLogSink(writer_);
}

}  // namespace platform
