#pragma once

#include <QStringList>
#include <vector>

#include "app/history/history_entry.h"

namespace platform {
class UserDefaults;
}

namespace app {

/// What a menu shows of the history, newest first. Indexes are those of `history`.
struct HistoryListing {
    struct Day {
        std::vector<qsizetype> items;  ///< Never none.
    };

    QList<HistoryEntry> history;
    std::vector<qsizetype> items;  ///< On the top level.
    std::vector<Day> days;         ///< Of the others; none in the result of a search.
    /// Terms were given and nothing matches; then this is the listing without terms.
    bool hasNoMatches = false;
    bool isSearchResult = false;

    [[nodiscard]] bool isEmpty() const { return items.empty() && days.empty(); }
    /// As in "Yesterday" or "Friday, November 20, 2026".
    [[nodiscard]] QString title(const Day& day, const QDateTime& now) const;
    [[nodiscard]] const HistoryEntry& entry(qsizetype index) const { return history[index]; }
};

/// `searchTerms` must all occur in the name or in the address, as the settings say; none: no
/// search.
[[nodiscard]] HistoryListing historyListing(const QList<HistoryEntry>& history,
                                            const platform::UserDefaults& defaults,
                                            const QStringList& searchTerms);

}  // namespace app
