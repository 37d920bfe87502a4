#include "app/commands/bulk_commands.h"

#include <algorithm>

#include "app/commands/command.h"
#include "app/queue/download_queue.h"
#include "app/settings.h"
#include "engine/settings.h"
#include "platform/base/run_loop.h"
#include "platform/base/user_defaults.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

/// So many rows at once vanish without an animation.
constexpr std::size_t massRemoval = 11;

/// Over a copy, since operations can change the queue.
template <typename Operation>
void forEach(Downloads downloads, const Operation& operation) {
    for (const engine::DownloadPtr& download : downloads) {
        operation(*download);
    }
}

Alert cancelAlert() {
    return {Alert::Kind::CancelDownloads, u"Cancel downloads?"_s,
            u"Are you sure you want to cancel your downloads? All temporary files will be "
            "deleted."_s,
            u"Cancel downloads"_s, u"Keep downloading"_s};
}

}  // namespace

void queuePaused(const Downloads& downloads) {
    forEach(downloads, [](auto& download) { download.addToQueue(); });
}

void pauseDownloads(const Downloads& downloads) {
    forEach(downloads, [](auto& download) { download.pause(); });
}

void togglePause(const Downloads& downloads) {
    const Downloads active =
        downloadsFromCollectionMatchingStatusMask(downloads, engine::activeStatuses);
    if (active.empty()) {
        queuePaused(downloads);
    } else {
        pauseDownloads(active);
    }
}

void open(const Downloads& downloads) {
    forEach(downloads, [](auto& download) { download.open(); });
}

void remove(const Downloads& downloads, platform::UserDefaults& defaults) {
    const bool skipsAnimation =
        downloads.size() >= massRemoval && defaults.get(engine::settings::uselessAnimations);
    if (skipsAnimation) {
        defaults.set(engine::settings::uselessAnimations, false);
    }
    forEach(downloads, [](auto& download) { download.remove(); });
    if (skipsAnimation) {
        defaults.set(engine::settings::uselessAnimations, true);
    }
}

bool cancel(const Downloads& downloads, bool mustConfirm, Questions& questions) {
    if (downloads.empty() || (mustConfirm && !questions.confirm(cancelAlert()))) {
        return false;
    }
    forEach(downloads, [](auto& download) { download.removeAndMoveToTrashIfDone(false); });
    return true;
}

void openOriginalURLs(const Downloads& downloads, const platform::UserDefaults& defaults) {
    const double interval = defaults.get(settings::urlOpeningInterval);
    for (std::size_t index = 0; index < downloads.size(); ++index) {
        const engine::DownloadPtr download = downloads[index];
        // Not by the record's own name: it may have others pending.
        static const int owner = 0;
        platform::mainRunLoop().performAfter(&owner, "openOriginalURLs",
                                             interval * static_cast<double>(index),
                                             [download] { download->openOriginalURL(); });
    }
}

void copyOriginalURLs(const Downloads& downloads, const FrontEnd& frontEnd) {
    QStringList addresses;
    for (const engine::DownloadPtr& download : downloads) {
        if (const QString address = download->originalURLString(); !address.isEmpty()) {
            addresses.append(address);
        }
    }
    if (addresses.isEmpty() || frontEnd.clipboard == nullptr) {
        frontEnd.feedback.beep();
        return;
    }
    frontEnd.clipboard->copy({addresses, addresses.join(u'\n')});
}

std::optional<qsizetype> rowForMovement(DQMainController& controller, qint64 movement) {
    const Downloads selected = controller.selectedDownloads();
    const Downloads& shown = controller.sortedAndFilteredDownloads();
    const auto end = static_cast<qsizetype>(shown.size());
    QList<qsizetype> rows;
    // Both are in the order of the list.
    auto next = selected.begin();
    for (qsizetype row = 0; row < end && next != selected.end(); ++row) {
        if (shown[static_cast<std::size_t>(row)] == *next) {
            rows.append(row);
            ++next;
        }
    }
    if (!controller.canDragRows(rows)) {
        return {};
    }
    const qsizetype target = movement == MoveUp      ? rows.first() - 1
                             : movement == MoveDown  ? rows.last() + 2
                             : movement == MoveToTop ? 0
                                                     : end;
    if (target < 0 || target > end || !controller.canDropRows(selected, target)) {
        return {};
    }
    return target;
}

}  // namespace app
