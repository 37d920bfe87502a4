#include "app/queue/queue_view.h"

#include <QRegularExpression>
#include <algorithm>

#include "app/settings.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

QueueView::QueueView(const engine::DownloadQueue& queue, const platform::UserDefaults& defaults)
    : queue_(queue), defaults_(defaults) {}

QueueView::~QueueView() = default;

void QueueView::setFilterText(const QString& text) {
    terms_ = text.simplified().split(u' ', Qt::SkipEmptyParts);
    invalidate();
}

void QueueView::setStateFilter(const StateFilter& filter) {
    states_ = filter;
    invalidate();
}

const QueueView::View& QueueView::sortedDownloads() {
    if (isStale_) {
        sortAndFilterDownloads();
    }
    return _sortedDownloads;
}

const QueueView::View& QueueView::sortedAndFilteredDownloads() {
    if (isStale_) {
        sortAndFilterDownloads();
    }
    return _sortedAndFilteredDownloads;
}

qsizetype QueueView::numberOfHiddenDownloads() const {
    return _sortedDownloads == _sortedAndFilteredDownloads
               ? 0
               : static_cast<qsizetype>(_sortedDownloads->size() -
                                        _sortedAndFilteredDownloads->size());
}

std::optional<qsizetype> QueueView::rowOf(const engine::DQDownload& download) {
    if (isStale_) {
        sortAndFilterDownloads();
    }
    const auto found = entries_.find(&download);
    if (found == entries_.end() || found->second.row < 0) {
        return {};
    }
    return found->second.row;
}

bool QueueView::reflectChange(const engine::DQDownload& download) {
    if (isStale_ || form_ != currentForm()) {
        const View before = _sortedAndFilteredDownloads;
        sortAndFilterDownloads();
        return !before || *before != *_sortedAndFilteredDownloads;
    }
    const auto found = entries_.find(&download);
    if (found == entries_.end()) {
        return false;
    }
    Entry& entry = found->second;
    if (entry.row < 0 && !(states_.isOn() && matchesFilter(download))) {
        hiddenOneMatches_ = hiddenOneMatches_ || matchesFilter(download);
        return false;
    }
    updateKey(entry, download);
    if (entry.row >= 0 && !hiddenOneMatches_ && matchesFilter(download) && isInPlace(entry)) {
        return false;
    }
    const View before = _sortedAndFilteredDownloads;
    sortAndFilterDownloads();
    return *before != *_sortedAndFilteredDownloads;
}

QueueView::Form QueueView::currentForm() const {
    return {defaults_.get(settings::sortingCriterion), defaults_.get(settings::invertSorting),
            defaults_.get(settings::toolbarFilterCriterion) == u"URL"_s};
}

void QueueView::sortAndFilterDownloads() {
    form_ = currentForm();
    updateEntries();
    _sortedDownloads = std::make_shared<const Downloads>(sorted());
    _sortedAndFilteredDownloads =
        isFiltering() ? std::make_shared<const Downloads>(filtered(*_sortedDownloads))
                      : _sortedDownloads;
    qsizetype row = 0;
    for (const engine::DownloadPtr& download : *_sortedAndFilteredDownloads) {
        entries_.find(download.get())->second.row = row++;
    }
    isStale_ = false;
    hiddenOneMatches_ = false;
}

void QueueView::updateEntries() {
    Entries entries;
    entries.reserve(queue_.downloads().size());
    std::size_t index = 0;
    for (const engine::DownloadPtr& download : queue_.downloads()) {
        auto known = entries_.extract(download.get());
        Entry& entry = known.empty() ? entries[download.get()]
                                     : entries.insert(std::move(known)).position->second;
        entry.queueIndex = index++;
        entry.row = -1;
        updateKey(entry, *download);
    }
    entries_.swap(entries);
}

void QueueView::updateKey(Entry& entry, const engine::DQDownload& download) const {
    if (form_.criterion <= 0) {
        entry.key.reset();
        return;
    }
    if (!entry.key) {
        entry.key = std::make_unique<SortKey>();
    }
    entry.key->update(download, form_.criterion);
}

Downloads QueueView::sorted() const {
    Downloads downloads = queue_.downloads();
    if (form_.criterion > 0) {
        std::vector<std::pair<const Entry*, const engine::DownloadPtr*>> order;
        order.reserve(downloads.size());
        for (const engine::DownloadPtr& download : queue_.downloads()) {
            order.emplace_back(&entries_.find(download.get())->second, &download);
        }
        mergeSort(order, [this](const auto& a, const auto& b) {
            return SortKey::compare(*a.first->key, *b.first->key, form_.criterion).order < 0;
        });
        std::transform(order.begin(), order.end(), downloads.begin(),
                       [](const auto& element) { return *element.second; });
    }
    if (form_.inverted) {
        std::reverse(downloads.begin(), downloads.end());
    }
    return downloads;
}

Downloads QueueView::filtered(const Downloads& downloads) const {
    Downloads matches;
    std::copy_if(downloads.begin(), downloads.end(), std::back_inserter(matches),
                 [this](const auto& download) { return matchesFilter(*download); });
    return matches;
}

bool QueueView::matchesFilter(const engine::DQDownload& download) const {
    return states_.matches(download) &&
           (terms_.isEmpty() || download.isMatchForSearchStrings(terms_, form_.checksURL));
}

bool QueueView::isAheadOf(const Entry& a, const Entry& b) const {
    const int order = SortKey::compare(*a.key, *b.key, form_.criterion).order;
    return order < 0 || (order == 0 && a.queueIndex < b.queueIndex);
}

bool QueueView::isInPlace(const Entry& entry) const {
    if (form_.criterion <= 0) {
        return true;
    }
    const Downloads& shown = *_sortedAndFilteredDownloads;
    const auto neighbour = [&](qsizetype row) -> const Entry* {
        return row < 0 || row >= static_cast<qsizetype>(shown.size())
                   ? nullptr
                   : &entries_.find(shown[static_cast<std::size_t>(row)].get())->second;
    };
    const qsizetype step = form_.inverted ? -1 : 1;
    const Entry* before = neighbour(entry.row - step);
    const Entry* after = neighbour(entry.row + step);
    return (!before || isAheadOf(*before, entry)) && (!after || isAheadOf(entry, *after));
}

}  // namespace app
