#include "app/terminal/run_ledger.h"

namespace app::terminal {

std::optional<Event::Kind> RunLedger::note(const Key& download, State state) {
    const auto entry = states_.try_emplace(download, State::Waiting).first;
    const State former = entry->second;
    if (former == state)
        return {};
    entry->second = state;
    if (former == State::Failed)
        --failures_;
    switch (state) {
        case State::Running:
            return Event::Kind::Started;
        case State::Done:
            return Event::Kind::Completed;
        case State::Failed:
            ++failures_;
            return Event::Kind::Failed;
        case State::Waiting:
            break;
    }
    return {};
}

}  // namespace app::terminal
