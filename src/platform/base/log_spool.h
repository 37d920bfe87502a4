#pragma once

#include <QString>
#include <cstddef>
#include <functional>
#include <memory>

#include "platform/base/log_record.h"

namespace platform {

/// The lines of one process on their way to the disk, in a file of the runtime folder, which lies
/// in memory (XDG Base Directory Specification): what a killed process had logged is found there
/// by the next one that looks. A lock (flock) tells whether the owner lives.
///
/// Lines are added to one half of the file while those of the other are being written. A line for
/// which there is no room is not kept here. Not for several threads at a time.
class LogSpool {
public:
    static constexpr std::size_t bytesOfHalf = 128UL * 1024;

    /// Null: no file can be made in `folder`.
    static std::unique_ptr<LogSpool> make(const QString& folder);
    /// Removes the file, unless there are lines in it that nobody has written.
    ~LogSpool();
    LogSpool(const LogSpool&) = delete;
    LogSpool& operator=(const LogSpool&) = delete;

    void add(const LogRecord& record);
    /// What has been added is going to be written.
    void take();
    /// What was taken has been written.
    void dropTaken();

private:
    struct File;
    explicit LogSpool(std::unique_ptr<File> file);

    const std::unique_ptr<File> file_;
};

/// Hands over, in their order, the lines that dead processes have left in `folder`, and removes
/// them once `write` has returned true for all of a process. Any process may; only one does.
void takeLeftLogLines(const QString& folder,
                      const std::function<bool(const LogRecord&, const LogOrigin&)>& write);

}  // namespace platform
