#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace platform {

/// A signal of the system's to be told of.
struct WatchedSignal {
    int number = 0;
    /// Being sent a second time does what the system does by default (which for most ends the
    /// process at once), even while the main thread is busy.
    bool defaultOnRepeat = false;
};

/// Tells of signals (signal-safety(7)) on the thread that made it, through Qt's event loop. Their
/// former dispositions come back with its end. One at a time in a process.
class SignalWatcher {
public:
    using Handler = std::function<void(int number)>;

    SignalWatcher(const std::vector<WatchedSignal>& watched, Handler handler);
    ~SignalWatcher();
    SignalWatcher(const SignalWatcher&) = delete;
    SignalWatcher& operator=(const SignalWatcher&) = delete;

private:
    class Private;
    std::unique_ptr<Private> private_;
};

/// Ends the process by a signal's default action, so that whoever started it sees why it ended.
[[noreturn]] void endBySignal(int number);
/// Stops the process as the terminal's stop key does, until it is continued.
void stopProcess();
/// Writing to a pipe that nobody reads, or past the limit on the size of files, becomes an error of
/// the write (EPIPE, EFBIG) instead of the process's end.
void letWritesFail();

}  // namespace platform
