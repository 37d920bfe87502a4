#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <unordered_map>

#include "app/terminal/reporter.h"

namespace app::terminal {

/// What became of each download in this run. Holds on to the downloads that it speaks of.
class RunLedger {
public:
    enum class State { Waiting, Running, Done, Failed };
    using Key = std::shared_ptr<const void>;

    /// Answers what is to be told of the change; nothing if it is no news.
    [[nodiscard]] std::optional<Event::Kind> note(const Key& download, State state);
    /// Of those that failed and have not been taken up again.
    [[nodiscard]] std::size_t failures() const { return failures_; }

private:
    std::unordered_map<Key, State> states_;
    std::size_t failures_ = 0;
};

}  // namespace app::terminal
