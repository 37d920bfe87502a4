#include "app/commands/bulk_commands.h"

#include <algorithm>

#include "app/commands/command.h"
#include "app/queue/download_order.h"
#include "app/rows/row_actions.h"
#include "app/rows/rows.h"
#include "engine/queue/download_queue.h"
#include "links/text/localization.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Over a copy, since operations can change the queue.
template <typename Operation>
void forEach(engine::DownloadQueue& queue, const Downloads& downloads, const Operation& operation) {
    const engine::DownloadQueue::Batch batch(queue);
    for (const engine::DownloadPtr& download : Downloads(downloads)) {
        operation(*download);
    }
}

Alert cancelAlert(std::size_t count) {
    return {Alert::Kind::CancelDownloads,
            count == 1 ? links::localized("Cancel 1 download?")
                       : links::filledFormat(links::localized("Cancel %@ downloads?"),
                                             {QString::number(count)}),
            u"What has come of them is kept until Orlop quits: Edit > Undo brings them back until "
            "then."_s,
            u"Cancel downloads"_s, u"Keep downloading"_s};
}

bool mayOpen(std::size_t count, Questions& questions, const char* title, const char* text) {
    constexpr std::size_t mostUnasked = 10;
    return count <= mostUnasked ||
           questions.confirm(
               {Alert::Kind::OpenMany,
                links::filledFormat(links::localized(title), {QString::number(count)}),
                QString::fromUtf8(text), u"Open"_s, u"Cancel"_s, true});
}

}  // namespace

void queuePaused(engine::DownloadQueue& queue, const Downloads& downloads) {
    forEach(queue, downloads, [](auto& download) { download.addToQueue(); });
}

void pauseDownloads(engine::DownloadQueue& queue, const Downloads& downloads) {
    forEach(queue, downloads, [](auto& download) { download.pause(); });
}

void togglePause(engine::DownloadQueue& queue, const Downloads& downloads) {
    const Downloads active =
        engine::downloadsFromCollectionMatchingStatusMask(downloads, engine::activeStatuses);
    if (active.empty()) {
        queuePaused(queue, downloads);
    } else {
        pauseDownloads(queue, active);
    }
}

bool mayOpenFiles(std::size_t count, Questions& questions) {
    return mayOpen(count, questions, links::translatable("Open %@ files?"),
                   links::translatable("Each of them opens in its application."));
}

void open(const RowActions& actions, const Downloads& downloads, Questions& questions) {
    if (!mayOpenFiles(downloads.size(), questions)) {
        return;
    }
    actions.open(downloads);
}

void openOriginalURLs(Rows& rows, const Downloads& downloads, Questions& questions) {
    if (mayOpen(downloads.size(), questions, links::translatable("Open %@ addresses?"),
                links::translatable("Each of them opens in a page of its own."))) {
        rows.openOriginalURLs(downloads);
    }
}

void remove(engine::DownloadQueue& queue, const Downloads& downloads) {
    forEach(queue, downloads, [](auto& download) { download.remove(); });
}

void withdraw(engine::DownloadQueue& queue, const Downloads& downloads) {
    forEach(queue, downloads, [](auto& download) { download.withdraw(); });
}

bool cancel(engine::DownloadQueue& queue, const Downloads& downloads, bool mustConfirm,
            Questions& questions) {
    if (downloads.empty() || (mustConfirm && !questions.confirm(cancelAlert(downloads.size())))) {
        return false;
    }
    withdraw(queue, downloads);
    return true;
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
