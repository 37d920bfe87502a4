#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include "platform/files/descriptor.h"

namespace diagnostics {

/// A program that runs with its standard output read on a thread of this object's own; it is ended
/// with the object.
class ChildOutput {
public:
    /// Called on that thread with what was read. False: the program is not wanted any more.
    using Take = std::function<bool(QByteArrayView bytes)>;

    /// Null: it cannot be started.
    [[nodiscard]] static std::unique_ptr<ChildOutput> start(const QString& program,
                                                            const QStringList& arguments,
                                                            Take take);
    ~ChildOutput();
    ChildOutput(const ChildOutput&) = delete;
    ChildOutput& operator=(const ChildOutput&) = delete;

    /// Ends the program; `take` is not called any more once this has returned. From any thread but
    /// the object's own, any number of times.
    void terminate();
    /// Returns when the program has ended. Not from `take`.
    void wait();
    [[nodiscard]] bool isRunning() const { return isRunning_; }

private:
    ChildOutput(pid_t process, platform::Descriptor output, Take take);

    void run();

    const pid_t process_;
    const platform::Descriptor output_;
    const platform::Descriptor stop_;  ///< An event: readable when the program is to be ended.
    const Take take_;
    std::atomic<bool> isRunning_ = true;
    std::thread thread_;
};

}  // namespace diagnostics
