#pragma once

#include <sys/types.h>
#include <QByteArray>
#include <QString>
#include <memory>

#include "platform/files/descriptor.h"

namespace platform {

/// The process that runs an automatic configuration script, with nothing of ours but what it is
/// given; it dies with the object. One thread at a time.
class ScriptProcess {
public:
    /// Starts `program` with `input` as its standard input. Null: it cannot be started.
    [[nodiscard]] static std::unique_ptr<ScriptProcess> start(const QString& program,
                                                              const QByteArray& input);
    ~ScriptProcess();
    ScriptProcess(const ScriptProcess&) = delete;
    ScriptProcess& operator=(const ScriptProcess&) = delete;

    /// Where its answer can be read; does not block.
    [[nodiscard]] const Descriptor& output() const { return output_; }

    /// Where it is installed: beside this program, or where helpers of programs are.
    [[nodiscard]] static QString defaultProgram();

private:
    ScriptProcess(pid_t process, Descriptor output);

    const pid_t process_;
    const Descriptor output_;
};

}  // namespace platform
