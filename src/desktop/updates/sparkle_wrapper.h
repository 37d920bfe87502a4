#pragma once

#include <QObject>
#include <optional>

#include "desktop/updates/appcast.h"
#include "desktop/updates/document_fetcher.h"
#include "desktop/updates/online_sources.h"

namespace platform {
class UserDefaults;
}

namespace desktop {

/// Looks for new versions of the program once a day, if that is wanted, remembers what was found
/// and says so. Installs nothing: that is left to people and their package managers. Main thread.
class DQSparkleWrapper final : public QObject {
    Q_OBJECT

public:
    /// All of it outlives the wrapper.
    struct Surroundings {
        platform::UserDefaults& defaults;
        platform::RunLoop& loop;
        DocumentFetcher& fetcher;
    };
    /// `packageManager`: as `packageManagerOf` answers.
    DQSparkleWrapper(const Surroundings& surroundings, OnlineSources sources,
                     QString currentShortVersion, QString packageManager);

    /// Looks now and then once a day, if that is wanted.
    void becomeSparkleDelegate();
    /// Empty: the program has no address to look at.
    [[nodiscard]] bool canCheck() const { return !sources_.appcast.isEmpty(); }
    void checkForUpdates();
    [[nodiscard]] bool isChecking() const { return isChecking_; }
    void toggleAutomaticChecking();
    /// Without a choice of the user's: unless a package manager looks after the program.
    [[nodiscard]] bool checksAutomatically() const;
    [[nodiscard]] const QString& packageManager() const { return packageManager_; }

    /// What the last look found; empty: nothing is known of this version.
    [[nodiscard]] QString statusDescription() const;
    [[nodiscard]] QString statusDateDescription() const;
    /// Why the last look found out nothing; empty: it did.
    [[nodiscard]] const QString& problem() const { return problem_; }
    /// Where people get a new version: from the package manager that looks after the program, or
    /// where the feed says, or else on the product's page. Nothing: nowhere is known.
    [[nodiscard]] std::optional<platform::Url> page() const;

Q_SIGNALS:
    void changed();
    /// A newer version than this one is there.
    void updateFound(const QString& description);

private:
    void checkIfDue();
    void didFetchSignature(const QByteArray& feed, const std::optional<QByteArray>& signature);
    void didFinishLoadingAppcast(const QByteArray& feed);
    /// Empty: none was found.
    void setUpdateVersion(const AppcastItem& found);
    void fail(const QString& problem);

    Surroundings surroundings_;
    const OnlineSources sources_;
    const QString currentShortVersion_, packageManager_;
    bool isChecking_ = false;
    QString problem_, page_;
    platform::Timer next_;
};

/// The wrapper as installed by the composition root. Null: there is none.
[[nodiscard]] DQSparkleWrapper* sharedSparkleWrapper();
/// Nullptr takes it away.
void installSparkleWrapper(DQSparkleWrapper* wrapper);

}  // namespace desktop
