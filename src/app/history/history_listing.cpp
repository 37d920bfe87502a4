#include "app/history/history_listing.h"

#include <functional>
#include <map>

#include "app/settings.h"
#include "links/format/dates.h"
#include "links/text/substrings.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

std::vector<qsizetype> matches(const QList<HistoryEntry>& history, const QStringList& terms,
                               bool checkURL) {
    std::vector<qsizetype> found;
    for (qsizetype index = history.size() - 1; index >= 0; --index) {
        const HistoryEntry& entry = history[index];
        if (entry.canBeShown() &&
            links::isMatchForSearchStrings(checkURL ? entry.originalURL : entry.name, terms)) {
            found.push_back(index);
        }
    }
    return found;
}

/// Fills the top level, and the days with the rest.
void divide(HistoryListing& listing, qint64 topLevelCount, const QDateTime& now) {
    std::map<QDate, HistoryListing::Day, std::greater<>> days;
    for (qsizetype index = listing.history.size() - 1; index >= 0; --index) {
        const HistoryEntry& entry = listing.entry(index);
        if (static_cast<qint64>(listing.items.size()) < topLevelCount) {
            if (entry.canBeShown()) {
                listing.items.push_back(index);
            }
        } else if (entry.date.isValid()) {
            HistoryListing::Day& day = days[entry.date.toLocalTime().date()];
            if (day.items.empty()) {
                day.title = links::dayDescription(entry.date, now);
            }
            day.items.push_back(index);
        }
    }
    for (auto& [date, day] : days) {
        listing.days.push_back(std::move(day));
    }
}

}  // namespace

HistoryListing historyListing(const QList<HistoryEntry>& history,
                              const platform::UserDefaults& defaults,
                              const QStringList& searchTerms, const QDateTime& now) {
    HistoryListing listing;
    listing.history = history;
    if (!searchTerms.isEmpty() && !history.isEmpty()) {
        const bool checkURL = defaults.get(settings::historySearchCriterion) == u"URL"_s;
        listing.items = matches(history, searchTerms, checkURL);
        if (!listing.items.empty()) {
            listing.isSearchResult = true;
            return listing;
        }
        listing.hasNoMatches = true;
    }
    divide(listing, defaults.get(settings::numberOfTopLevelHistoryItems), now);
    return listing;
}

}  // namespace app
