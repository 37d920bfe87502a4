#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/intake/file_collector.h"
#include "app/intake/intake_run.h"
#include "app/intake/pasteboard.h"
#include "app/intake/script_arguments.h"
#include "platform/base/timer.h"

namespace app {

/// Every address that enters the program passes here: turns text, clipboards and files into
/// addresses, and these into downloads. Main thread.
///
/// A long intake goes on over many turns of the main loop; the first part of it is done before the
/// call returns.
class Intake {
public:
    struct Surroundings {
        engine::DownloadQueue& queue;
        platform::UserDefaults& defaults;
        platform::RunLoop& loop;
        FrontEnd frontEnd;
        /// The queue has grown; `wasEmpty`: these are its first downloads.
        std::function<void(bool wasEmpty)> didGrow;
        /// An intake has ended that made downloads.
        std::function<void(const Downloads& made)> didEnd;
        /// Pieces of what the user pasted, dropped or typed in which there is no address.
        std::function<void(const std::vector<RefusedText>& refused)> notUnderstood;
        /// Downloads of the queue whose addresses were given once more.
        std::function<void(const Downloads& known)> alreadyInList;
        /// What files and folders could not be opened and why, a sentence each.
        std::function<void(const QStringList& problems)> notOpened;
        /// How many downloads a long intake has made so far. Nothing: it has ended.
        std::function<void(std::optional<qsizetype> count)> progressed;
        /// The user handed something over from another program.
        std::function<void()> giveFeedback;
    };

    explicit Intake(Surroundings surroundings);
    Intake(const Intake&) = delete;
    Intake& operator=(const Intake&) = delete;

    [[nodiscard]] std::vector<platform::Url> URLsFromCollection(const QStringList& items) const;
    [[nodiscard]] std::vector<platform::Url> URLsFromString(const QString& text) const;
    [[nodiscard]] std::optional<std::vector<platform::Url>> URLsFromPasteboard(
        const Pasteboard& pasteboard) const;

    void openURLs(std::vector<platform::Url> urls, const ScriptArguments& arguments = {});
    /// Those that the queue does not have yet, if the settings want that to be checked.
    void openNewURLs(std::vector<platform::Url> urls);
    void openURLsAfterDelay(const std::vector<platform::Url>& urls,
                            const ScriptArguments& arguments, bool giveFeedback);
    bool openFiles(const QStringList& paths, bool afterDelay, bool giveFeedback);
    void openText(const QString& text, const ScriptArguments& arguments = {});

    /// Whether there is an address in it.
    [[nodiscard]] bool canDropPasteboard(const Pasteboard& pasteboard) const;
    /// False: it is blank. What is not understood of it is told.
    bool dropPasteboard(const Pasteboard& pasteboard);
    /// Opens what it holds. Otherwise, since it is blank, the text for the user to fill.
    [[nodiscard]] std::optional<QString> openURLFromPasteboard(const Pasteboard& pasteboard);

    /// Puts fresh downloads of their addresses in place of these. False: none was replaced.
    bool retry(const Downloads& downloads);

    void stop();
    /// Whether something is still to be taken in of what was handed over.
    [[nodiscard]] bool isActive() const;
    /// Calls `done` on a later turn of the main loop, when what was to be taken in before this call
    /// has been.
    void whenTakenIn(std::function<void()> done);

private:
    struct Activity;

    [[nodiscard]] std::vector<platform::Url> candidatesIn(const QStringList& texts) const;
    [[nodiscard]] FileCollector fileCollector() const;
    void beginWithPasteboard(const Pasteboard& pasteboard, const ScriptArguments& arguments = {});
    void begin(std::unique_ptr<AddressSource> addresses, const ScriptArguments& arguments,
               const SharedIntakeNotes& notes);
    [[nodiscard]] bool mustWait(const Activity& activity) const;
    void proceed(const std::shared_ptr<Activity>& activity);
    void report(Activity& activity, bool goesOn);
    void tellNotes(const Activity& activity);
    void reportFruitlessPaths(const QStringList& paths);
    void callWaiting();

    Surroundings surroundings_;
    std::vector<std::shared_ptr<Activity>> activities_;
    /// Who waits for the end of which of them.
    struct Waiting {
        std::vector<std::weak_ptr<Activity>> activities;
        std::function<void()> done;
    };
    std::vector<Waiting> waiting_;
    platform::Timers steps_;     ///< Of the activities.
    platform::Timers openings_;  ///< Of what was handed over, not to be taken in at once.
};

}  // namespace app
