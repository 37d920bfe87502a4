#include "app/queue/list_presenter.h"

#include <QSet>
#include <algorithm>

#include "app/settings.h"

namespace app {

ListPresenter::ListPresenter(Surroundings surroundings)
    : surroundings_(std::move(surroundings)), update_(surroundings_.loop) {}

void ListPresenter::updateDownloadListAndStatus() {
    update_.cancel();
    surroundings_.view.invalidate();
    updateSortedDownloadListAndStatus();
}

void ListPresenter::updateDownloadListAndStatusSoon() {
    surroundings_.view.invalidate();
    update_.startUnlessActive(0, [this] { updateDownloadListAndStatus(); });
}

bool ListPresenter::reflectChange(const engine::DQDownload& download) {
    if (update_.isActive()) {
        return true;
    }
    if (!surroundings_.view.reflectChange(download)) {
        return false;
    }
    updateSortedDownloadListAndStatus();
    return true;
}

void ListPresenter::updateSortedDownloadListAndStatus() {
    const bool didFollow = followReplacements();
    Downloads shown = selectedDownloads();
    const bool isAnother = didFollow || shown.size() != selected_.size();
    selected_ = std::move(shown);
    surroundings_.list.reloadRows(shownRows(selected_));
    surroundings_.updateStatus();
    if (isAnother) {
        selectionIsAnother();
    }
}

QList<qsizetype> ListPresenter::shownRows(const Downloads& downloads) {
    QList<qsizetype> rows;
    for (const engine::DownloadPtr& download : downloads) {
        if (const std::optional<qsizetype> row = surroundings_.view.rowOf(*download)) {
            rows.append(*row);
        }
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

Downloads ListPresenter::selectedDownloads() {
    const QueueView::View shown = surroundings_.view.sortedAndFilteredDownloads();
    Downloads downloads;
    for (const qsizetype row : shownRows(selected_)) {
        downloads.push_back((*shown)[static_cast<std::size_t>(row)]);
    }
    return downloads;
}

void ListPresenter::selectDownloads(const Downloads& downloads) {
    selected_ = downloads;
    selected_ = selectedDownloads();
    surroundings_.list.selectRows(shownRows(selected_));
    selectionIsAnother();
}

void ListPresenter::selectInPlaceOf(const engine::DownloadPtr& former,
                                    const engine::DownloadPtr& download) {
    replacements_.insert_or_assign(former, download);
}

bool ListPresenter::followReplacements() {
    bool didFollow = false;
    for (engine::DownloadPtr& download : selected_) {
        for (auto next = replacements_.find(download); next != replacements_.end();
             next = replacements_.find(download)) {
            download = next->second;
            didFollow = true;
        }
    }
    replacements_.clear();
    return didFollow;
}

QStringList ListPresenter::selectedOriginalURLStrings() {
    QStringList urlStrings;
    for (const engine::DownloadPtr& download : selectedDownloads()) {
        if (const QString urlString = download->originalURLString(); !urlString.isEmpty()) {
            urlStrings.append(urlString);
        }
    }
    return urlStrings;
}

void ListPresenter::selectOriginalURLStrings(const QStringList& urlStrings) {
    const QSet<QString> wanted(urlStrings.begin(), urlStrings.end());
    Downloads downloads;
    for (const engine::DownloadPtr& download : *surroundings_.view.sortedAndFilteredDownloads()) {
        if (wanted.contains(download->originalURLString())) {
            downloads.push_back(download);
        }
    }
    selectDownloads(downloads);
}

void ListPresenter::selectionDidChange(const QList<qsizetype>& rows) {
    const QueueView::View shown = surroundings_.view.sortedAndFilteredDownloads();
    selected_.clear();
    for (const qsizetype row : rows) {
        if (row >= 0 && row < static_cast<qsizetype>(shown->size())) {
            selected_.push_back((*shown)[static_cast<std::size_t>(row)]);
        }
    }
    selectionIsAnother();
}

void ListPresenter::selectionIsAnother() {
    surroundings_.defaults.set(settings::selectedURLs, selectedOriginalURLStrings());
    surroundings_.selectionChanged();
}

Downloads ListPresenter::contextDownloads() {
    Downloads selected = selectedDownloads();
    return selected.empty() ? *surroundings_.view.sortedAndFilteredDownloads() : selected;
}

}  // namespace app
