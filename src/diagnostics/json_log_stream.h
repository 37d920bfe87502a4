#pragma once

#include <QByteArray>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "diagnostics/log_entry.h"

namespace diagnostics {

class ChildOutput;

using LogEntries = std::vector<LogEntry>;

/// Called with each batch of whole entries, on a thread of the stream's. False: enough; a live
/// stream goes on all the same.
using LogEntryHandler = std::function<bool(LogEntries entries)>;

/// Cuts whole entries out of a JSON array that may never end, without waiting for its end. One
/// thread at a time.
class JSONLogCutter {
public:
    explicit JSONLogCutter(LogEntryHandler outputHandler)
        : _outputHandler(std::move(outputHandler)) {}

    /// What the handler answered to the entries that are whole now; true without any.
    bool append(QByteArrayView bytes);

private:
    void removeHeader(qsizetype& last);
    std::optional<LogEntries> parsed(QByteArrayView batch);

    QByteArray _dataStore;
    LogEntryHandler _outputHandler;
    LogEntryMaker _maker;
    bool _removeHeader = true;
};

/// The log tool as a child process, `orlop-log` with `--style json`, and its entries.
class ILRJSONLogStream {
public:
    /// A running stream; with `waitUntilExit` it returns only after the tool has ended, and the
    /// handler ends the tool with false. `isRunning` says whether it could be started.
    ILRJSONLogStream(const QStringList& arguments, LogEntryHandler outputHandler,
                     bool waitUntilExit);
    ~ILRJSONLogStream();
    ILRJSONLogStream(const ILRJSONLogStream&) = delete;
    ILRJSONLogStream& operator=(const ILRJSONLogStream&) = delete;

    /// Blocks until the tool has ended.
    static void waitForStreamWithArguments(const QStringList& arguments,
                                           const LogEntryHandler& outputHandler);
    /// Ends the tool if it runs; the handler is not called any more then. Not from the handler.
    void terminate();
    [[nodiscard]] bool isRunning() const;

    /// Where the tool is: beside this program, or in the search path. Empty: nowhere.
    [[nodiscard]] static QString toolPath();

private:
    JSONLogCutter _cutter;
    std::unique_ptr<ChildOutput> _task;
};

}  // namespace diagnostics
