#pragma once

#include <QObject>

#include "app/controller_roles.h"
#include "app/history/history_file.h"
#include "platform/base/timer.h"
#include "platform/base/user_defaults.h"

namespace platform {
class Disks;
}

namespace app {

/// Remembers what was downloaded after the queue has forgotten it: a bounded list on disk.
///
/// Read when it is first needed. A change is saved 5 seconds after the last one, and when the
/// program ends. Follows its settings. Main thread.
class DQHistorian final : public QObject, public HistoryKeeper {
    Q_OBJECT

public:
    /// `supportFolder` is where the program keeps its own data; empty: nowhere.
    DQHistorian(QString supportFolder, platform::UserDefaults& defaults, platform::Disks& disks,
                platform::RunLoop& loop);
    ~DQHistorian() override;

    [[nodiscard]] const QString& applicationSupportPath() const { return supportFolder_; }
    [[nodiscard]] QString historyArchivePath() const;

    /// Oldest first.
    [[nodiscard]] const QList<HistoryEntry>& history();
    [[nodiscard]] qsizetype numberOfItems() { return history().size(); }

    /// A download was finished or aborted; it is taken up if the settings let it.
    void add(engine::DQDownload& download) override;
    void noteVerification(engine::DQDownload& download) override;
    /// Drops what is too much with `checkNumber`, and with `checkCompletion` what is not complete;
    /// arranges for saving what has changed.
    void checkNumberOfItems(bool checkNumber, bool checkCompletion);
    void save();
    /// What it held, to be put back if the user wants it after all.
    QList<HistoryEntry> clear();
    /// Puts back what came before the entries there are.
    void putBack(const QList<HistoryEntry>& entries);
    void cleanUp() override;

Q_SIGNALS:
    void historyChanged();
    /// As well as `historyChanged`: what is remembered of single entries may be out of date.
    void itemsRemoved();

private:
    void settingsDidChange();
    void didRemoveItems();

    const QString supportFolder_;
    platform::UserDefaults& defaults_;
    HistoryFile file_;
    QList<HistoryEntry> _history;
    /// The settings that were followed last.
    bool isOfCompleteDownloads_;
    qint64 limit_;
    bool isLoaded_ = false;
    bool _wantsToBeSaved = false;
    platform::Timer saving_;
    platform::Observation observation_;
};

/// The history as installed by the composition root or by a test.
[[nodiscard]] DQHistorian& historian();
/// Nullptr takes it away.
void installHistorian(DQHistorian* historian);

}  // namespace app
