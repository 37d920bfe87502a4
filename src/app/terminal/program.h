#pragma once

#include <QProcessEnvironment>
#include <QStringList>
#include <functional>
#include <memory>

namespace app {
class Application;
}

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
/// `accompany` is called when the queue has been read; what it answers lives until the run ends.
using Accompany = std::function<std::shared_ptr<void>(Application& application)>;
[[nodiscard]] ProgramEnd runProgram(const QStringList& arguments,
                                    const QProcessEnvironment& environment,
                                    const Accompany& accompany);

}  // namespace app::terminal
