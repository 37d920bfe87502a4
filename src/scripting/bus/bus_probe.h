#pragma once

#include <QLocalSocket>
#include <QObject>
#include <functional>

namespace scripting {

/// Finds out whether the session bus speaks before anything connects to it, which would wait for
/// as long as it is silent. Main thread, inside Qt's event loop.
class BusProbe final : public QObject {
    Q_OBJECT

public:
    /// `speaks` is called once, when the bus has said a word; never if there is none.
    explicit BusProbe(std::function<void()> speaks);

    /// The same for whoever has nothing else to do, within a few seconds.
    [[nodiscard]] static bool waitUntilItSpeaks();

private:
    void greet();
    void hear();

    std::function<void()> speaks_;
    QLocalSocket socket_;
};

}  // namespace scripting
