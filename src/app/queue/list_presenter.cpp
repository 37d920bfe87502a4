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
    if (Downloads shown = selectedDownloads(); shown.size() != selected_.size()) {
        selected_ = std::move(shown);
        storeSelection();
    }
    surroundings_.list.reloadRows(shownRows(selected_));
    surroundings_.updateStatus();
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
    storeSelection();
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
    storeSelection();
}

void ListPresenter::storeSelection() {
    surroundings_.defaults.set(settings::selectedURLs, selectedOriginalURLStrings());
}

Downloads ListPresenter::contextDownloads() {
    Downloads selected = selectedDownloads();
    return selected.empty() ? *surroundings_.view.sortedAndFilteredDownloads() : selected;
}

}  // namespace app
