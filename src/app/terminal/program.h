#pragma once

#include <QProcessEnvironment>
#include <QStringList>

namespace app::terminal {

/// How a run ended.
struct ProgramEnd {
    /// The exit status: 0 if every download completed, 1 if one failed, 2 on bad usage.
    int status = 0;
    /// The signal that ended it. 0: none.
    int signal = 0;
    /// Threads still wait for a disk that does not answer.
    bool mustNotWait = false;
};

/// The whole of `orlop-terminal` inside a QCoreApplication. `arguments` without the program's
/// name; `environment` as the program was given it.
[[nodiscard]] ProgramEnd runProgram(const QStringList& arguments,
                                    const QProcessEnvironment& environment);

}  // namespace app::terminal
