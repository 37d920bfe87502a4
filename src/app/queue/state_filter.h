#pragma once

#include <QString>
#include <array>
#include <map>

#include "engine/queue/download_queue.h"

namespace app {

/// How a download stands, as far as people tell rows apart. Each stands in exactly one way.
enum class RowState { Active, Waiting, Failed, Done };
inline constexpr std::size_t numberOfRowStates = 4;

[[nodiscard]] RowState rowState(const engine::DQDownload& download);
/// The folder of its file, or of what has come of it. Empty: none is known yet. Asks no disk.
[[nodiscard]] QString rowFolder(const engine::DQDownload& download);

/// Which rows are shown beside those that match a text.
struct StateFilter {
    std::optional<RowState> state;  ///< Nothing: all.
    QString folder;                 ///< Empty: all.

    [[nodiscard]] bool isOn() const { return state || !folder.isEmpty(); }
    [[nodiscard]] bool matches(const engine::DQDownload& download) const;
    friend bool operator==(const StateFilter&, const StateFilter&) = default;
};

/// How many downloads each filter would show.
struct StateCounts {
    std::array<qsizetype, numberOfRowStates> states{};
    std::map<QString, qsizetype> folders;
};
[[nodiscard]] StateCounts stateCounts(const engine::Downloads& downloads);

}  // namespace app
