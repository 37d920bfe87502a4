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

/// The day of one moment after another. Most are on the day of the one before, and to ask the zone
/// takes long.
class LocalDays {
public:
    [[nodiscard]] QDate of(const QDateTime& date) {
        const qint64 moment = date.toMSecsSinceEpoch();
        if (moment < begin_ || moment >= end_) {
            day_ = date.toLocalTime().date();
            begin_ = day_.startOfDay().toMSecsSinceEpoch();
            end_ = day_.addDays(1).startOfDay().toMSecsSinceEpoch();
        }
        return day_;
    }

private:
    QDate day_;
    qint64 begin_ = 0, end_ = 0;
};

/// Fills the top level, and the days with the rest.
void divide(HistoryListing& listing, qint64 topLevelCount) {
    std::map<QDate, std::vector<qsizetype>, std::greater<>> days;
    LocalDays localDays;
    for (qsizetype index = listing.history.size() - 1; index >= 0; --index) {
        const HistoryEntry& entry = listing.entry(index);
        if (static_cast<qint64>(listing.items.size()) < topLevelCount) {
            if (entry.canBeShown()) {
                listing.items.push_back(index);
            }
        } else if (entry.date.isValid()) {
            days[localDays.of(entry.date)].push_back(index);
        }
    }
    for (auto& [date, items] : days) {
        listing.days.push_back({std::move(items)});
    }
}

}  // namespace

HistoryListing historyListing(const QList<HistoryEntry>& history,
                              const platform::UserDefaults& defaults,
                              const QStringList& searchTerms) {
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
    divide(listing, defaults.get(settings::numberOfTopLevelHistoryItems));
    return listing;
}

QString HistoryListing::title(const Day& day, const QDateTime& now) const {
    return links::dayDescription(entry(day.items.front()).date, now);
}

}  // namespace app
