#pragma once

#include <QStringList>
#include <functional>

#include "app/front_end.h"
#include "app/queue/queue_view.h"
#include "platform/base/timer.h"

namespace app {

/// Keeps the list on the screen in step with the queue, and knows what is selected in it. The
/// selection follows the downloads, not the row numbers. Main thread.
class ListPresenter {
public:
    struct Surroundings {
        QueueView& view;
        DownloadListView& list;
        platform::RunLoop& loop;
        platform::UserDefaults& defaults;
        /// After every update of the whole list.
        std::function<void()> updateStatus;
    };

    explicit ListPresenter(Surroundings surroundings);
    ListPresenter(const ListPresenter&) = delete;
    ListPresenter& operator=(const ListPresenter&) = delete;

    /// Sorts, filters and shows everything anew.
    void updateDownloadListAndStatus();
    /// The same once at the next turn, however often it is asked for until then.
    void updateDownloadListAndStatusSoon();
    /// A download has changed. Whether that moved rows, so that the list is shown anew.
    bool reflectChange(const engine::DQDownload& download);

    [[nodiscard]] Downloads selectedDownloads();
    void selectDownloads(const Downloads& downloads);
    [[nodiscard]] QStringList selectedOriginalURLStrings();
    void selectOriginalURLStrings(const QStringList& urlStrings);
    /// The user has selected exactly these rows; stored for the next launch.
    void selectionDidChange(const QList<qsizetype>& rows);
    /// The selected downloads, or all that are shown if none is.
    [[nodiscard]] Downloads contextDownloads();

private:
    void updateSortedDownloadListAndStatus();
    [[nodiscard]] QList<qsizetype> shownRows(const Downloads& downloads);
    void storeSelection();

    Surroundings surroundings_;
    Downloads selected_;
    platform::Timer update_;
};

}  // namespace app
