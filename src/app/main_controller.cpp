#include "app/main_controller.h"

#include <QRandomGenerator>
#include <algorithm>
#include <utility>

#include "app/controller_roles.h"
#include "app/failures/file_problem.h"
#include "app/intake/intake.h"
#include "app/intake/target_consent.h"
#include "app/intake/target_place.h"
#include "app/lifecycle/lifecycle.h"
#include "app/queue/batch_progress.h"
#include "app/queue/list_presenter.h"
#include "app/queue/orphaned_containers.h"
#include "app/queue/queue_archive.h"
#include "app/queue/queue_follower.h"
#include "app/queue/removed_downloads.h"
#include "app/queue/restored_download.h"
#include "app/queue/row_drag.h"
#include "app/rows/rows.h"
#include "app/rules/rule_book.h"
#include "app/schedule/automation.h"
#include "app/settings.h"
#include "engine/paths/support_folder.h"
#include "engine/settings.h"
#include "links/paths/path_rules.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/files/files.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

DQMainController* installedController = nullptr;

constexpr qint64 reversesQueue = -1, shufflesQueue = -2;
constexpr qint64 upsideDown = -2;
constexpr platform::Seconds toggledRedrawDelay = 0.1;

}  // namespace

struct DQMainController::Parts {
    Parts(DQMainController& owner, const Surroundings& given);

    Surroundings surroundings;
    RuleBook rules;
    QueueFollower follower;
    engine::DownloadQueue queue;
    Rows rows;
    QueueView view;
    RowDrag drag;
    ListPresenter list;
    RemovedDownloads removed;
    QueueArchive archive;
    Intake intake;
    Lifecycle lifecycle;
    BatchProgress batch;
    AllDone allDone;
    Automation automation;

    // What a program without these parts has.
    StatusReporter noStatus;
    HistoryKeeper noHistory;
    StatusReporter* status = &noStatus;
    HistoryKeeper* history = &noHistory;
    Scheduler* schedule = &automation.schedule();
};

DQMainController::Parts::Parts(DQMainController& owner, const Surroundings& given)
    : surroundings(given),
      rules(given.defaults),
      follower({owner, given.loop, given.defaults, given.frontEnd, queue, rows, view, list, archive,
                removed, intake, batch, allDone, status, history}),
      queue({given.defaults, given.loop, given.disks, given.environment, rules}, follower),
      rows({queue, given.workspace, given.frontEnd,
            [this](engine::DQDownload& download) { follower.removeDownload(download); },
            [&owner](engine::DQDownload& download) { owner.fetchAgain(download); }}),
      view(queue, given.defaults),
      drag(queue, view, rows.vanishing(), given.defaults),
      list({view, given.frontEnd.list, given.loop, given.defaults,
            [&owner] { owner.updateStatusAndForceUpdateApplicationImage(false); },
            [&owner] { Q_EMIT owner.selectionChanged(); }}),
      removed({queue,
               [this](const engine::DQDownload& download) {
                   return download.isBeingRemoved() || rows.vanishing().isVanishing(download);
               },
               [this](const engine::DQDownload& download) { rows.vanishing().forget(download); },
               [&owner](const QString& sentence) { Q_EMIT owner.removalsChanged(sentence); }}),
      archive(engine::queueArchivePath(given.environment),
              {queue, given.defaults, given.loop, given.frontEnd.questions,
               [this](const engine::DQDownload& download) {
                   return rows.vanishing().isVanishing(download);
               },
               [this] { return removed.archives(); },
               [&owner](const QString& keptPath) { Q_EMIT owner.queueFileDamaged(keptPath); },
               [&owner](const platform::Error& error) {
                   Q_EMIT owner.queueFileNotWritten(writingProblem(error));
               },
               [&owner](const platform::Error& error, bool isEmpty) {
                   const QString problem =
                       isEmpty ? links::localized(
                                     "The queue’s file cannot be removed: %1 What is done "
                                     "may come back at the next start.")
                               : links::localized("The queue cannot be saved: %1");
                   Q_EMIT owner.queueNotSavedAtQuit(problem.arg(writingProblem(error)));
               }}),
      intake({queue, given.defaults, given.loop, given.frontEnd,
              [&owner](bool wasEmpty) { owner.queueDidGrow(wasEmpty); },
              [&owner](const Downloads& made) { owner.intakeDidEnd(made); },
              [&owner](const std::vector<RefusedText>& refused) {
                  Q_EMIT owner.textNotUnderstood(refused);
              },
              [&owner](const Downloads& known) { Q_EMIT owner.alreadyInList(known); },
              [&owner](const QStringList& problems) { Q_EMIT owner.filesNotOpened(problems); },
              [&owner](std::optional<qsizetype> count) {
                  count ? Q_EMIT owner.intakeProgressed(*count) : Q_EMIT owner.intakeEnded();
              },
              [this] { lifecycle.giveFeedback(); }}),
      lifecycle({queue, given.defaults, given.loop, given.power, given.frontEnd,
                 [this] {
                     archive.write();
                     archive.finish();
                 },
                 [this] {
                     const bool quits = archive.writeBeforeQuitting();
                     if (quits) {
                         removed.giveUp();
                     }
                     return quits;
                 },
                 [this]() -> Scheduler& { return *schedule; },
                 [this]() -> HistoryKeeper& { return *history; },
                 [&owner](qint64 active) { Q_EMIT owner.goesOnUnseen(active); },
                 [&owner](const QString& sentence) { Q_EMIT owner.machineRefused(sentence); },
                 [&owner] { Q_EMIT owner.terminated(); }}),
      automation({queue, allDone, given.defaults, given.loop, given.frontEnd,
                  [&owner](bool force) { owner.updateStatusAndForceUpdateApplicationImage(force); },
                  [this](engine::StatusMask mask) { follower.clearDownloads(mask); }}) {}

DQMainController::DQMainController(const Surroundings& surroundings)
    : parts_(std::make_unique<Parts>(*this, surroundings)) {}

DQMainController::~DQMainController() = default;

const DQMainController::Surroundings& DQMainController::surroundings() const {
    return parts_->surroundings;
}

const Downloads& DQMainController::downloads() const {
    return parts_->queue.downloads();
}

Downloads DQMainController::downloadsMatchingStatusMask(engine::StatusMask mask) const {
    return parts_->queue.downloadsMatchingStatusMask(mask);
}

bool DQMainController::anyDownloadMatchesStatusMask(engine::StatusMask mask) const {
    return tally().count(mask) > 0;
}

qsizetype DQMainController::numberOfDownloads() const {
    return static_cast<qsizetype>(downloads().size());
}

qsizetype DQMainController::numberOfFailedDownloads() const {
    return tally().count(engine::DQDownloadStatusAborted);
}

const engine::QueueTally& DQMainController::tally() const {
    return parts_->queue.tally();
}

const Downloads& DQMainController::sortedAndFilteredDownloads() {
    return *parts_->view.sortedAndFilteredDownloads();
}

std::shared_ptr<const Downloads> DQMainController::sortedAndFilteredDownloadsSnapshot() {
    return parts_->view.sortedAndFilteredDownloads();
}

engine::DownloadPtr DQMainController::downloadAtSortedAndFilteredIndex(qsizetype row) {
    const Downloads& shown = sortedAndFilteredDownloads();
    return row >= 0 && row < static_cast<qsizetype>(shown.size())
               ? shown[static_cast<std::size_t>(row)]
               : nullptr;
}

void DQMainController::setFilterText(const QString& text) {
    parts_->view.setFilterText(text);
    updateDownloadListAndStatus();
}

void DQMainController::setStateFilter(const StateFilter& filter) {
    if (filter == stateFilter()) {
        return;
    }
    parts_->view.setStateFilter(filter);
    updateDownloadListAndStatus();
    Q_EMIT stateFilterChanged();
}

const StateFilter& DQMainController::stateFilter() const {
    return parts_->view.stateFilter();
}

bool DQMainController::isFiltering() const {
    return parts_->view.isFiltering();
}

qsizetype DQMainController::numberOfHiddenDownloads() const {
    return parts_->view.numberOfHiddenDownloads();
}

void DQMainController::setFilterCriterion(const QString& criterion) {
    parts_->surroundings.defaults.set(settings::toolbarFilterCriterion, criterion);
    updateDownloadListAndStatus();
}

void DQMainController::changeSorting(qint64 tag) {
    if (tag < 0) {
        parts_->surroundings.defaults.set(settings::invertSorting, tag == upsideDown);
    } else {
        parts_->surroundings.defaults.set(settings::sortingCriterion, tag);
    }
    updateDownloadListAndStatus();
}

void DQMainController::rearrange(qint64 tag) {
    Downloads order = downloads();
    if (tag == reversesQueue) {
        std::reverse(order.begin(), order.end());
    } else if (tag == shufflesQueue) {
        std::shuffle(order.begin(), order.end(), *QRandomGenerator::global());
    } else {
        sortDownloads(order, tag);
    }
    parts_->queue.setOrder(std::move(order));
    parts_->archive.write();
    updateDownloadListAndStatus();
}

bool DQMainController::canRearrange(qint64 tag) const {
    return downloads().size() > 1 &&
           !containsDownloadsEffectivelySortedByCriterion(downloads(), tag, false);
}

void DQMainController::updateDownloadListAndStatus() {
    parts_->list.updateDownloadListAndStatus();
}

void DQMainController::selectionDidChange(const QList<qsizetype>& rows) {
    parts_->list.selectionDidChange(rows);
}

Downloads DQMainController::selectedDownloads() {
    return parts_->list.selectedDownloads();
}

void DQMainController::selectDownloads(const Downloads& downloads) {
    parts_->list.selectDownloads(downloads);
}

QStringList DQMainController::selectedOriginalURLStrings() {
    return parts_->list.selectedOriginalURLStrings();
}

void DQMainController::selectOriginalURLStrings(const QStringList& urlStrings) {
    parts_->list.selectOriginalURLStrings(urlStrings);
}

Downloads DQMainController::contextDownloads() {
    return parts_->list.contextDownloads();
}

Downloads DQMainController::contextDownloadsMatchingStatusMask(engine::StatusMask mask) {
    return engine::downloadsFromCollectionMatchingStatusMask(contextDownloads(), mask);
}

bool DQMainController::anyContextDownloadMatchesStatusMask(engine::StatusMask mask) {
    return engine::anyDownloadFromCollectionMatchesStatusMask(contextDownloads(), mask);
}

Rows& DQMainController::rows() {
    return parts_->rows;
}

engine::DownloadQueue& DQMainController::queue() {
    return parts_->queue;
}

void DQMainController::updateDownloadListDisplay() {
    parts_->surroundings.frontEnd.list.setNeedsDisplayAfterDelay(toggledRedrawDelay);
}

void DQMainController::updateStatusAndForceUpdateApplicationImage(bool force) {
    parts_->lifecycle.statusDidChange();
    parts_->status->updateStatusAndForceUpdateApplicationImage(force);
    Q_EMIT statusChanged();
}

void DQMainController::clear() {
    clearDownloads(engine::finishedStatuses);
}

void DQMainController::clearDownloads(engine::StatusMask mask) {
    parts_->follower.clearDownloads(mask);
}

void DQMainController::vanishDownloads(const Downloads& downloads) {
    parts_->follower.vanishDownloads(downloads);
}

QString DQMainController::lastRemoval() const {
    return parts_->removed.last();
}

platform::Seconds DQMainController::lastRemovalIsFreshFor() const {
    return parts_->removed.freshFor();
}

void DQMainController::undoRemoval() {
    parts_->follower.undoRemoval();
}

void DQMainController::didRemove(const QString& sentence, std::function<void()> putBack) {
    parts_->removed.add(sentence, std::move(putBack));
}

void DQMainController::mountsDidChange() {
    parts_->follower.mountsDidChange();
}

void DQMainController::removeDownloadIfDoneWithPath(const QString& path) {
    const std::size_t count = parts_->queue.removeIf([&](engine::DQDownload& download) {
        return engine::matchesStatusMask(download.status(), engine::finishedStatuses) &&
               links::isEqualToPath(download.pathByCheckingExistence(false), path);
    });
    if (count > 0) {
        updateDownloadListAndStatus();
    }
}

bool DQMainController::canDragRows(const QList<qsizetype>& rows) {
    return parts_->drag.canDragRows(rows);
}

bool DQMainController::canDropRows(const Downloads& dragged, qsizetype row) {
    return parts_->drag.canDropRows(dragged, row);
}

bool DQMainController::dropRows(const Downloads& dragged, qsizetype row) {
    const bool didMove = parts_->drag.dropRows(dragged, row);
    if (didMove) {
        parts_->archive.write();
        updateDownloadListAndStatus();
    }
    return didMove;
}

std::vector<platform::Url> DQMainController::URLsFromCollection(const QStringList& items) const {
    return parts_->intake.URLsFromCollection(items);
}

std::vector<platform::Url> DQMainController::URLsFromString(const QString& text) const {
    return parts_->intake.URLsFromString(text);
}

std::optional<std::vector<platform::Url>> DQMainController::URLsFromPasteboard(
    const Pasteboard& pasteboard) const {
    return parts_->intake.URLsFromPasteboard(pasteboard);
}

void DQMainController::openURLs(const std::vector<platform::Url>& urls,
                                const ScriptArguments& arguments) {
    parts_->intake.openURLs(urls, arguments);
}

void DQMainController::openNewURLs(const std::vector<platform::Url>& urls) {
    parts_->intake.openNewURLs(urls);
}

void DQMainController::openURLsAfterDelay(const std::vector<platform::Url>& urls,
                                          const ScriptArguments& arguments, bool giveFeedback) {
    parts_->intake.openURLsAfterDelay(urls, arguments, giveFeedback);
}

bool DQMainController::openFiles(const QStringList& paths, bool afterDelay, bool giveFeedback) {
    return parts_->intake.openFiles(paths, afterDelay, giveFeedback);
}

bool DQMainController::canDropPasteboard(const Pasteboard& pasteboard) const {
    return parts_->intake.canDropPasteboard(pasteboard);
}

bool DQMainController::dropPasteboard(const Pasteboard& pasteboard) {
    return parts_->intake.dropPasteboard(pasteboard);
}

std::optional<QString> DQMainController::openURLFromPasteboard(const Pasteboard& pasteboard) {
    return parts_->intake.openURLFromPasteboard(pasteboard);
}

void DQMainController::openText(const QString& text, const ScriptArguments& arguments) {
    parts_->intake.openText(text, arguments);
}

bool DQMainController::isTakingIn() const {
    return parts_->intake.isActive();
}

void DQMainController::whenTakenIn(std::function<void()> done) {
    parts_->intake.whenTakenIn(std::move(done));
}

void DQMainController::stopIntake() {
    parts_->intake.stop();
}

void DQMainController::retry(const Downloads& downloads) {
    if (parts_->intake.retry(downloads)) {
        updateDownloadListAndStatus();
    } else {
        parts_->surroundings.frontEnd.feedback.beep();
    }
}

/// A notification may outlast the row that it told of.
void DQMainController::fetchAgain(engine::DQDownload& download) {
    const auto url = platform::Url::parse(download.originalURLString());
    if (url && !queue().contains(download)) {
        openNewURLs({*url});
    } else {
        retry({download.shared_from_this()});
    }
}

void DQMainController::noteVerification(engine::DQDownload& download) {
    parts_->history->noteVerification(download);
}

void DQMainController::didAdd(const Downloads& added, bool wasEmpty) {
    queueDidGrow(wasEmpty);
    intakeDidEnd(added);
}

void DQMainController::queueDidGrow(bool wasEmpty) {
    const auto updateList = [this] { updateDownloadListAndStatus(); };
    if (!wasEmpty || !parts_->surroundings.frontEnd.presence.springOpenDownloadWindow(updateList)) {
        updateList();
    }
}

void DQMainController::intakeDidEnd(const Downloads& added) {
    constexpr std::size_t mostNames = 5;
    parts_->archive.write();
    QString text;
    if (added.size() > mostNames) {
        text =
            links::filledFormat(links::localized("%@ downloads"), {QString::number(added.size())});
    } else {
        QStringList names;
        for (const engine::DownloadPtr& download : added) {
            names.append(download->displayName());
        }
        text = names.join(u'\n');
    }
    parts_->status->sendUserNotification(u"Added to Queue"_s, links::localized("Added to Queue"),
                                         text, false);
    Q_EMIT downloadsAdded(added);
}

bool DQMainController::writeArchiveBeforeQuitting(bool quitting) {
    if (quitting) {
        return parts_->archive.writeBeforeQuitting();
    }
    parts_->archive.write();
    return true;
}

void DQMainController::finishWriting() {
    parts_->archive.finish();
}

void DQMainController::whenSaved(std::function<void(bool isOnDisk)> saved) {
    parts_->archive.whenSaved(std::move(saved));
}

bool DQMainController::isShowingQuitWhileDownloadingAlert() const {
    return parts_->archive.isShowingQuitWhileDownloadingAlert();
}

engine::DownloadPtr DQMainController::addDownloadFromArchive(const QVariantMap& archive,
                                                             const QString& externalContainerPath) {
    return app::addDownloadFromArchive(parts_->queue, parts_->surroundings.defaults, archive,
                                       externalContainerPath);
}

void DQMainController::readQueue() {
    OrphanedContainers orphans(
        foldersOfDownloads(parts_->surroundings.defaults, parts_->rules.specialCases()));
    std::vector<engine::DownloadQueue::Place> removed;
    for (const QVariantMap& archive : parts_->archive.read()) {
        const auto download = addDownloadFromArchive(orphans.completed(archive), {});
        const QVariant index = archive.value(engine::keys::removedFrom);
        if (download && index.isValid()) {
            removed.push_back({download, static_cast<std::size_t>(index.toULongLong())});
        }
    }
    const QStringList familiar = familiarFolders(parts_->surroundings.defaults, parts_->rules);
    for (const auto& [container, archive] : orphans.unclaimed(parts_->queue.downloads())) {
        addDownloadFromArchive(withFamiliarTargetsOnly(archive, familiar), container);
    }
    parts_->removed.takeIn(removed);
}

void DQMainController::applicationDidFinishLaunching() {
    updateDownloadListAndStatus();
    const platform::UserDefaults& defaults = parts_->surroundings.defaults;
    if (defaults.get(settings::rememberSelection)) {
        selectOriginalURLStrings(defaults.stringArrayForKey(settings::selectedURLs.name()));
    }
    parts_->lifecycle.didFinishLaunching();
}

bool DQMainController::shouldQuit() {
    return parts_->lifecycle.shouldQuit();
}

void DQMainController::terminate() {
    parts_->lifecycle.terminate();
}

Lifecycle& DQMainController::lifecycle() {
    return parts_->lifecycle;
}

RuleBook& DQMainController::ruleBook() {
    return parts_->rules;
}

Automation& DQMainController::automation() {
    return parts_->automation;
}

void DQMainController::setStatusReporter(StatusReporter* reporter) {
    parts_->status = reporter ? reporter : &parts_->noStatus;
}

void DQMainController::setHistory(HistoryKeeper* history) {
    parts_->history = history ? history : &parts_->noHistory;
}

void DQMainController::setScheduler(Scheduler* scheduler) {
    parts_->schedule = scheduler ? scheduler : &parts_->automation.schedule();
}

void DQMainController::windowWasSeen() {
    parts_->status->windowWasSeen();
}

QueueStatus DQMainController::queueStatus() const {
    return parts_->status->status();
}

AllDone& DQMainController::allDone() {
    return parts_->allDone;
}

BatchProgress& DQMainController::batchProgress() {
    return parts_->batch;
}

DQMainController& mainController() {
    return *installedController;
}

void installMainController(DQMainController* controller) {
    installedController = controller;
}

}  // namespace app
