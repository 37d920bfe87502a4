#pragma once

#include <QStringList>
#include <memory>

#include "diagnostics/json_log_stream.h"

namespace diagnostics {

/// Where a reader has its entries from: the log tool, or what stands for it in a test.
class LogSource {
public:
    /// A tool that runs; it is ended with the object, and the handler not called any more then.
    class Stream {
    public:
        virtual ~Stream() = default;
    };

    virtual ~LogSource() = default;
    /// Whether there is a tool.
    [[nodiscard]] virtual bool isAvailable() const = 0;
    /// The handler is called on a thread of the stream's.
    [[nodiscard]] virtual std::unique_ptr<Stream> start(const QStringList& arguments,
                                                        LogEntryHandler handler) = 0;
    /// Returns when the tool has ended, which a handler that answers false makes it do. Any thread.
    virtual void read(const QStringList& arguments, const LogEntryHandler& handler) = 0;
};

/// `orlop-log`.
[[nodiscard]] std::unique_ptr<LogSource> makeLogToolSource();

}  // namespace diagnostics
