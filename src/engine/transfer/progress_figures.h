#pragma once

#include <QtGlobal>
#include <memory>
#include <optional>
#include <vector>

#include "platform/base/clock.h"

namespace engine {

class DQDownloadWorkerPrototype;

/// What all workers of a download have achieved together, in bytes.
struct OverallFigures {
    qint64 downloaded = 0;  ///< Since they were started; never more than `expected`.
    qint64 offset = 0;      ///< On disk before.
    qint64 expected = 0;    ///< The whole file, as far as is known.
    qint64 truncation = 0;  ///< Where the reporting worker is to be cut off; 0: nowhere.
    /// Else `expected` only follows what has come.
    bool isLengthKnown = false;

    [[nodiscard]] qint64 total() const { return downloaded + offset; }
};

/// `reporting` may be null. `fractionsAreRecorded`: the parts of the others are in the settings,
/// so that nothing is lost by cutting the first one off.
[[nodiscard]] OverallFigures overallFigures(
    const std::vector<std::shared_ptr<DQDownloadWorkerPrototype>>& workers,
    const DQDownloadWorkerPrototype* reporting, bool fractionsAreRecorded);

/// How fast bytes come: the running half minute, and of the one before the share that the running
/// one has not covered yet. All times on the scale that never jumps.
class SpeedMeter {
public:
    /// Bytes in so many seconds.
    struct Span {
        double bytes = 0;
        platform::Seconds seconds = 0;
    };

    void note(platform::Seconds now, qint64 downloadedBytes);
    /// What came before says nothing any more: another limit holds. Nor does what comes in the
    /// next moment, for that was on its way.
    void beginAnew(platform::Seconds now, qint64 downloadedBytes);
    /// Without a half minute behind us, the average since `start`. Nothing in the first second.
    [[nodiscard]] std::optional<Span> span(platform::Seconds now, qint64 downloadedBytes,
                                           platform::Seconds start) const;

private:
    struct Quantum {
        platform::Seconds date = 0;
        qint64 bytes = 0;
    };

    std::optional<Quantum> ongoing_;
    std::optional<Quantum> previous_;
    std::optional<Quantum> begun_;  ///< Anew. Nothing: with the download.
    std::optional<platform::Seconds> settlesUntil_;
};

}  // namespace engine
