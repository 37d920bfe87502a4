#pragma once

#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/front_end.h"
#include "app/intake/pasteboard.h"
#include "app/intake/refused_text.h"
#include "app/intake/script_arguments.h"
#include "app/workspace.h"
#include "engine/queue/download_queue.h"
#include "platform/net/url.h"

namespace platform {
class Disks;
class Power;
class RunLoop;
class UserDefaults;
}  // namespace platform

namespace app {

struct AllDone;
struct QueueStatus;
struct StateFilter;
class Automation;
class BatchProgress;
class HistoryKeeper;
class Lifecycle;
class Rows;
class RuleBook;
class Scheduler;
class StatusReporter;
using engine::Downloads;

/// Owns the queue for the life of the program and is what front ends and scripts call.
///
/// The work is done by collaborators with files of their own; this class only connects them. It
/// holds no widget: front ends implement `FrontEnd` and report what the user did. Main thread.
class DQMainController final : public QObject {
    Q_OBJECT

public:
    /// All of it outlives the controller.
    struct Surroundings {
        platform::RunLoop& loop;
        platform::UserDefaults& defaults;
        platform::Disks& disks;
        platform::Power& power;
        const engine::Environment& environment;
        const Workspace& workspace;
        FrontEnd frontEnd;
    };

    explicit DQMainController(const Surroundings& surroundings);
    [[nodiscard]] const Surroundings& surroundings() const;
    ~DQMainController() override;

    // The queue, in the order in which downloads are admitted and saved.

    [[nodiscard]] engine::DownloadQueue& queue();
    [[nodiscard]] const Downloads& downloads() const;
    [[nodiscard]] Downloads downloadsMatchingStatusMask(engine::StatusMask mask) const;
    [[nodiscard]] bool anyDownloadMatchesStatusMask(engine::StatusMask mask) const;
    [[nodiscard]] qsizetype numberOfDownloads() const;
    [[nodiscard]] qsizetype numberOfFailedDownloads() const;
    /// How many there are at each status.
    [[nodiscard]] const engine::QueueTally& tally() const;

    // The list: the queue sorted and filtered, in which row n is element n.

    [[nodiscard]] const Downloads& sortedAndFilteredDownloads();
    /// The same, to keep: later changes make another one.
    [[nodiscard]] std::shared_ptr<const Downloads> sortedAndFilteredDownloadsSnapshot();
    /// Null: no such row.
    [[nodiscard]] engine::DownloadPtr downloadAtSortedAndFilteredIndex(qsizetype row);
    /// Blanks separate the terms that a shown download must match; none shows all.
    void setFilterText(const QString& text);
    /// Shows only rows that stand so; for this run.
    void setStateFilter(const StateFilter& filter);
    [[nodiscard]] const StateFilter& stateFilter() const;
    /// By text or by state.
    [[nodiscard]] bool isFiltering() const;
    /// How many downloads the list does not show because of the filter.
    [[nodiscard]] qsizetype numberOfHiddenDownloads() const;
    /// Stores what the filter looks at: "Name" or "URL".
    void setFilterCriterion(const QString& criterion);
    /// The tag of a menu item: -2 upside down, -1 not, 0 and above a criterion.
    void changeSorting(qint64 tag);
    /// Changes the queue itself: -1 reverses it, -2 shuffles it, a criterion sorts it.
    void rearrange(qint64 tag);
    [[nodiscard]] bool canRearrange(qint64 tag) const;
    /// Puts the list together anew, keeping the selection; every change of membership or order
    /// ends here.
    void updateDownloadListAndStatus();

    // The selection. Commands act on the context downloads: those selected, or all shown.

    /// The user has selected exactly these rows.
    void selectionDidChange(const QList<qsizetype>& rows);
    [[nodiscard]] Downloads selectedDownloads();
    void selectDownloads(const Downloads& downloads);
    [[nodiscard]] QStringList selectedOriginalURLStrings();
    void selectOriginalURLStrings(const QStringList& urlStrings);
    [[nodiscard]] Downloads contextDownloads();
    [[nodiscard]] Downloads contextDownloadsMatchingStatusMask(engine::StatusMask mask);
    [[nodiscard]] bool anyContextDownloadMatchesStatusMask(engine::StatusMask mask);

    // Dragging rows within the list (see `RowDrag`). The front end keeps what is dragged.

    [[nodiscard]] bool canDragRows(const QList<qsizetype>& rows);
    [[nodiscard]] bool canDropRows(const Downloads& dragged, qsizetype row);
    bool dropRows(const Downloads& dragged, qsizetype row);

    /// What rows show and offer.
    [[nodiscard]] Rows& rows();
    /// How a row looks has changed for reasons outside its download.
    void updateDownloadListDisplay();

    // Leaving the queue.

    void vanishDownloads(const Downloads& downloads);
    /// All that are finished, or failed for good.
    void clear();
    /// Those of these statuses.
    void clearDownloads(engine::StatusMask mask);
    /// The user's removals are taken back one after the other, the last one first.
    /// The sentence tells what; empty: there is nothing.
    [[nodiscard]] QString lastRemoval() const;
    /// So long the user can be expected to look at it still.
    [[nodiscard]] platform::Seconds lastRemovalIsFreshFor() const;
    void undoRemoval();
    /// The user has removed something else, which `putBack` brings again.
    void didRemove(const QString& sentence, std::function<void()> putBack);
    void removeDownloadIfDoneWithPath(const QString& path);

    // Taking addresses in.

    [[nodiscard]] std::vector<platform::Url> URLsFromCollection(const QStringList& items) const;
    [[nodiscard]] std::vector<platform::Url> URLsFromString(const QString& text) const;
    /// Nothing: it holds neither addresses nor text.
    [[nodiscard]] std::optional<std::vector<platform::Url>> URLsFromPasteboard(
        const Pasteboard& pasteboard) const;
    void openURLs(const std::vector<platform::Url>& urls, const ScriptArguments& arguments = {});
    /// Those that the queue does not have yet; `alreadyInList` tells of the others.
    void openNewURLs(const std::vector<platform::Url>& urls);
    /// In the place of its row, or as a new one where that is gone.
    void fetchAgain(engine::DQDownload& download);
    void openURLsAfterDelay(const std::vector<platform::Url>& urls,
                            const ScriptArguments& arguments, bool giveFeedback);
    /// With `afterDelay` whether anything was found to open, else whether the queue grew.
    bool openFiles(const QStringList& paths, bool afterDelay, bool giveFeedback);
    /// Whether there is an address in it.
    [[nodiscard]] bool canDropPasteboard(const Pasteboard& pasteboard) const;
    /// What a drop onto the list or the status item does: takes the addresses in; what else there
    /// is goes to `textNotUnderstood`. False: it is blank.
    bool dropPasteboard(const Pasteboard& pasteboard);
    /// The same at once. Where it is blank, the text for the user to fill.
    [[nodiscard]] std::optional<QString> openURLFromPasteboard(const Pasteboard& pasteboard);
    /// Text that the user entered; may hold ranges of any size, which come in piece by piece.
    /// `arguments`: where it goes, and whether it starts at once.
    void openText(const QString& text, const ScriptArguments& arguments = {});
    /// Ends every intake that is still going on; what it has made stays.
    void stopIntake();
    /// Whether something is still to be taken in of what was handed over.
    [[nodiscard]] bool isTakingIn() const;
    /// Calls `done` when what was handed over so far is taken in.
    void whenTakenIn(std::function<void()> done);
    void retry(const Downloads& downloads);
    /// It is known now what a finished file adds up to.
    void noteVerification(engine::DQDownload& download);
    /// Shows and saves downloads that somebody has put into the queue by himself, and tells of
    /// them. `wasEmpty`: the queue was, before.
    void didAdd(const Downloads& added, bool wasEmpty);

    // The queue on disk.

    /// False: the user does not want to quit.
    bool writeArchiveBeforeQuitting(bool quitting);
    /// Something was mounted or unmounted: takes up downloads whose volume is back, or tells of
    /// them.
    void mountsDidChange();
    /// Waits until what was to be saved so far is on disk.
    void finishWriting();
    /// Saves the queue and calls `saved` when it is on disk, or with false if it cannot be written.
    void whenSaved(std::function<void(bool isOnDisk)> saved);
    /// The question whether to quit while downloads are active is on the screen.
    [[nodiscard]] bool isShowingQuitWhileDownloadingAlert() const;
    engine::DownloadPtr addDownloadFromArchive(const QVariantMap& archive,
                                               const QString& externalContainerPath);

    // Life of the program.

    /// Takes in what the queue's file holds; queued downloads may start from here on.
    void readQueue();
    /// The front end is set up: shows the list and gets going.
    void applicationDidFinishLaunching();
    /// Saves and tidies up. False: the user does not want to quit.
    [[nodiscard]] bool shouldQuit();
    /// `shouldQuit`, and if it agrees `terminated`.
    void terminate();
    [[nodiscard]] Lifecycle& lifecycle();

    [[nodiscard]] RuleBook& ruleBook();
    /// The daily schedule, and switches.
    [[nodiscard]] Automation& automation();

    // Parts that are made elsewhere; null: none. They outlive the controller or are taken away.

    void setStatusReporter(StatusReporter* reporter);
    void setHistory(HistoryKeeper* history);
    void setScheduler(Scheduler* scheduler);
    /// The window has come before the user.
    void windowWasSeen();
    void updateStatusAndForceUpdateApplicationImage(bool force);
    /// As of the last `statusChanged`.
    [[nodiscard]] QueueStatus queueStatus() const;
    [[nodiscard]] AllDone& allDone();
    [[nodiscard]] BatchProgress& batchProgress();

Q_SIGNALS:
    /// Membership or order of the queue may have changed.
    void queueChanged();
    void selectionChanged();
    void stateFilterChanged();
    /// How the queue as a whole stands may have changed.
    void statusChanged();
    void downloadChanged(const engine::DownloadPtr& download);
    /// It is done or has failed by itself.
    void downloadEnded(const engine::DownloadPtr& download);
    /// The user has removed what the sentence names, and can take that back; empty: has done so.
    void removalsChanged(const QString& sentence);
    /// New downloads, which the list shows already.
    void downloadsAdded(const Downloads& added);

    /// A long intake has made so many downloads, and has ended.
    void intakeProgressed(qsizetype count);
    void intakeEnded();
    /// Pieces of a pasted, dropped or typed text in which there is no address, for the user to
    /// correct.
    void textNotUnderstood(const std::vector<RefusedText>& refused);
    /// Addresses were given once more of which these are the downloads.
    void alreadyInList(const Downloads& downloads);
    /// The user has taken their removal back.
    void downloadsRestored(const Downloads& downloads);
    /// What files and folders could not be opened and why, a sentence each.
    void filesNotOpened(const QStringList& problems);

    /// The queue's file could not be understood and lies at the path now; empty: it could not even
    /// be moved away and will not be written over.
    void queueFileDamaged(const QString& keptPath);
    /// `reason`: a sentence.
    void queueFileNotWritten(const QString& reason);
    /// The program is about to end; to be told at once.
    void queueNotSavedAtQuit(const QString& problem);

    /// A download cannot go on before the volume of its partial file is back.
    void volumeMissing(const QString& sentence);
    /// The same for all of one moment: what an alert says of them.
    void volumesMissing(const QString& text);
    /// Their volume is back, and they wait for somebody to resume them.
    void volumesReturned(const Downloads& downloads);
    /// The window was closed for the first time in this run, and nothing shows that the program
    /// goes on with this many downloads.
    void goesOnUnseen(qint64 activeDownloads);
    /// The machine neither sleeps nor shuts down, in a sentence.
    void machineRefused(const QString& sentence);
    /// The file of a removed download is still there.
    void fileNotThrownAway(const QString& path);

    /// Nothing keeps the program running any more.
    void terminated();

private:
    struct Parts;

    void queueDidGrow(bool wasEmpty);
    void intakeDidEnd(const Downloads& added);

    std::unique_ptr<Parts> parts_;
};

/// The controller as installed by the composition root or by a test.
[[nodiscard]] DQMainController& mainController();
/// Nullptr takes it away.
void installMainController(DQMainController* controller);

}  // namespace app
