#pragma once

#include <QtGlobal>
#include <optional>

namespace engine {

/// The part of one worker as it stands, for those who look on.
struct RunningPart {
    enum class State {
        Waiting,  ///< For a free connection.
        Running,  ///< Its request is out.
        Served,   ///< Bytes are on their way, or have been.
        Done
    };

    qint64 start = 0;     ///< In the whole file.
    qint64 length = 0;    ///< 0: not known.
    qint64 received = 0;  ///< Bytes of it that are in the file.
    /// Bytes a second, of late or when it ended. Nothing: not known yet.
    std::optional<double> rate{};
    State state = State::Waiting;

    [[nodiscard]] qint64 left() const { return length - received; }
};

}  // namespace engine
