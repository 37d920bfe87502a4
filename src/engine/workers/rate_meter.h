#pragma once

#include <QtGlobal>
#include <optional>

#include "platform/base/clock.h"

namespace engine {

/// How fast bytes come on one connection: over the last two to four seconds, so that neither a
/// hiccup nor the long past counts for much. All times on the scale that never jumps.
class RateMeter {
public:
    void start(platform::Seconds now) { older_ = newer_ = {now, 0}; }
    /// `bytes`: since the start.
    void note(platform::Seconds now, qint64 bytes) {
        if (older_ && now - newer_.time >= window) {
            older_ = newer_;
            newer_ = {now, bytes};
        }
    }
    /// Bytes a second. Nothing: it was not started, or too short a while ago.
    [[nodiscard]] std::optional<double> rate(platform::Seconds now, qint64 bytes) const {
        if (!older_ || now - older_->time < shortestMeasure)
            return std::nullopt;
        return static_cast<double>(bytes - older_->bytes) / (now - older_->time);
    }

private:
    struct Mark {
        platform::Seconds time = 0;
        qint64 bytes = 0;
    };

    static constexpr platform::Seconds window = 2;
    static constexpr platform::Seconds shortestMeasure = 0.25;

    std::optional<Mark> older_;
    Mark newer_;
};

}  // namespace engine
