#pragma once

#include <QtGlobal>
#include <unordered_map>
#include <vector>

#include "platform/base/clock.h"

namespace engine {
class DQDownload;
class DQDownloadWorkerPrototype;
}  // namespace engine

namespace app {

/// What one connection of a running download carries.
struct Connection {
    enum class State { Waiting, Running, Done };

    qint64 start = 0;      ///< Its first byte in the whole file.
    qint64 end = -1;       ///< Its last one; -1: not known.
    qint64 arrived = 0;    ///< Of its part, what was on disk before included.
    qint64 perSecond = 0;  ///< Bytes of late; 0 as well if nobody knows yet.
    State state = State::Waiting;

    /// 0 to 1; 0 where the end is not known.
    [[nodiscard]] double fraction() const;
};

/// Looks at the connections of one download now and then, and knows from that how fast they are.
/// Main thread.
class ConnectionMeter {
public:
    /// In the order of the file. `now` on the scale that never jumps.
    [[nodiscard]] std::vector<Connection> connections(const engine::DQDownload& download,
                                                      platform::Seconds now);

private:
    struct Look {
        platform::Seconds at = 0;
        qint64 arrived = 0;
        double perSecond = 0;
    };
    [[nodiscard]] Look lookAt(const engine::DQDownloadWorkerPrototype& worker, qint64 arrived,
                              platform::Seconds now) const;

    std::unordered_map<const engine::DQDownloadWorkerPrototype*, Look> looks_;
};

}  // namespace app
