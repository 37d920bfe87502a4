#pragma once

#include <QSet>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "app/front_end.h"
#include "app/intake/address_source.h"
#include "app/intake/intake_notes.h"
#include "app/intake/offered_documents.h"
#include "app/intake/script_arguments.h"
#include "app/intake/target_consent.h"
#include "engine/queue/download_queue.h"
#include "platform/base/user_defaults.h"

namespace engine {
class UserSettings;
}

namespace app {

/// Turns addresses into downloads of the queue: what one call of `openURLs` does, with the state
/// that lives for that call. It is driven in steps, since addresses can be more than fit into one
/// turn of the main loop. Main thread.
class IntakeRun {
public:
    struct Surroundings {
        engine::DownloadQueue& queue;
        platform::UserDefaults& defaults;
        FrontEnd frontEnd;
    };

    /// `notes` hears what could not be opened and what else the lists among the addresses hold.
    IntakeRun(Surroundings surroundings, std::unique_ptr<AddressSource> addresses,
              const ScriptArguments& arguments, SharedIntakeNotes notes);

    /// Takes in at most so many addresses. False: there are no more.
    bool step(int maximum);
    /// The next step finds no more.
    void stop() { isOver_ = true; }

    /// How many downloads were made.
    [[nodiscard]] qsizetype count() const { return static_cast<qsizetype>(made_.size()); }
    /// Whether the list may show a record that is not there any more, though none was made: a new
    /// one has taken its place, or the user did not want it after all.
    [[nodiscard]] bool hasReplaced() const { return hasReplaced_; }
    /// They themselves.
    [[nodiscard]] const Downloads& made() const { return made_; }

private:
    /// Whether the list of addresses in hand goes on.
    enum class Progress { GoesOn, Ends };

    Progress open(const platform::Url& url);
    void openBundle(const platform::Url& url);
    [[nodiscard]] engine::DownloadPtr downloadOfBundle(const QString& container) const;
    [[nodiscard]] engine::DownloadPtr downloadOfMovedData(const QVariantMap& archive) const;
    /// False: the queue has no download that lost it.
    [[nodiscard]] bool openMovedBundle(const QVariantMap& archive, const QString& container);
    void goOnWith(engine::DQDownload& download);
    void openList(const QString& path);
    /// Whether the user wants what text documents hold. True: it is the list in hand now.
    bool takeOffered();
    [[nodiscard]] const engine::Rules& rules() const;
    [[nodiscard]] TargetConsent targetConsent();
    Progress openRequestFile(const platform::Url& url);
    Progress addDownload(const platform::Url& url);
    [[nodiscard]] engine::DownloadPtr appendDownload(const platform::Url& url);
    void didAdd(const engine::DownloadPtr& download);

    /// False: the user cancelled.
    bool chooseDestination(engine::DQDownload& download, const platform::Url& url);
    bool chooseFile(engine::UserSettings& userSettings, const platform::Url& url);
    bool chooseFolder(engine::UserSettings& userSettings);
    void takeTarget(engine::UserSettings& userSettings);

    Surroundings surroundings_;
    /// The addresses that were given.
    SingleOrMany given_;
    /// The list in hand last; those below it wait for its end.
    std::vector<std::unique_ptr<AddressSource>> lists_;
    QSet<QString> readLists_;
    SharedIntakeNotes notes_;
    OfferedDocuments offered_;
    const QVariantMap request_;
    const QStringList downloadPageChain_;
    QString target_;
    bool targetIsFolder_;
    QString chosenFolder_;
    bool asksForFolder_;
    const bool autoStart_;
    bool isOver_ = false;
    bool hasReplaced_ = false;
    Downloads made_;
};

}  // namespace app
