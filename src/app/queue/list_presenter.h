#pragma once

#include <QStringList>
#include <functional>
#include <unordered_map>

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
        /// Whoever changed it: the user, a filter, or rows that left or were replaced.
        std::function<void()> selectionChanged;
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
    /// A selected row stays selected when another record takes its place.
    void selectInPlaceOf(const engine::DownloadPtr& former, const engine::DownloadPtr& download);
    [[nodiscard]] QStringList selectedOriginalURLStrings();
    void selectOriginalURLStrings(const QStringList& urlStrings);
    /// The user has selected exactly these rows.
    void selectionDidChange(const QList<qsizetype>& rows);
    /// The selected downloads, or all that are shown if none is.
    [[nodiscard]] Downloads contextDownloads();

private:
    void updateSortedDownloadListAndStatus();
    [[nodiscard]] QList<qsizetype> shownRows(const Downloads& downloads);
    /// Stores it for the next launch and tells of it.
    void selectionIsAnother();
    bool followReplacements();

    Surroundings surroundings_;
    Downloads selected_;
    /// Not followed yet: there may be as many as there are rows.
    std::unordered_map<engine::DownloadPtr, engine::DownloadPtr> replacements_;
    platform::Timer update_;
};

}  // namespace app
