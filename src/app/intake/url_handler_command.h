#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "platform/base/clock.h"

namespace app {

class DQMainController;
class Questions;

/// Whether an address has one of the program's own schemes (orlop, orlops, secureorlop), by which
/// links in browsers hand over what they stand for.
[[nodiscard]] bool hasProgramScheme(const QString& address);

/// Takes in addresses of the program's own schemes. Browsers hand one over twice now and then, so
/// an equal one within a second of the last is dropped. Main thread.
class DQURLHandlerCommand {
public:
    /// Both outlive it.
    DQURLHandlerCommand(DQMainController& controller, Questions& questions)
        : controller_(controller), questions_(questions) {}

    /// Several linked files are asked about first. What is no address is dropped.
    void perform(const QString& address);

private:
    [[nodiscard]] bool isRepeated(const QString& address);
    [[nodiscard]] bool confirmLinkedFiles(const QStringList& lines);
    void openURLStrings(const QString& text);

    DQMainController& controller_;
    Questions& questions_;
    QString lastAddress_;
    std::optional<platform::Seconds> lastTime_;  ///< On the monotonic scale.
};

}  // namespace app
