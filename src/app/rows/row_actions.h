#pragma once

#include <functional>
#include <utility>

#include "app/front_end.h"
#include "app/workspace.h"
#include "engine/queue/download_queue.h"

namespace platform {
class UserDefaults;
}

namespace app {

class FilePresence;

/// What a row's first button stands for.
enum class PrimaryAction { Pause, Start, TryAgain, Reveal };

[[nodiscard]] PrimaryAction primaryAction(const engine::DQDownload& download);

/// What a row's buttons and its small commands do; each command beeps if it cannot be done. Main
/// thread.
class RowActions {
public:
    /// All of it outlives this.
    struct Surroundings {
        const platform::UserDefaults& defaults;
        const Workspace& workspace;
        FrontEnd frontEnd;
        FilePresence& presence;
        /// Puts a new record in the place of one that has ended.
        std::function<void(engine::DQDownload&)> retry;
    };

    explicit RowActions(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

    /// `index` is a `DQDownloadAction`. Costs nothing: it may be asked for each row that is drawn.
    [[nodiscard]] bool canPerform(engine::DQDownload& download, unsigned index) const;
    void perform(engine::DQDownload& download, unsigned index) const;

    /// The finished files in their applications; anything else is revealed. For files that are gone
    /// the user can have them downloaded again.
    void open(const engine::Downloads& downloads) const;
    void open(engine::DQDownload& download) const { open({download.shared_from_this()}); }
    /// For a file that is gone the user can see the folder in which it was.
    void reveal(engine::DQDownload& download) const;
    /// The page in the browser that the download was handed over from.
    void openPage(const engine::DQDownload& download) const;
    void openOriginalURL(const engine::DQDownload& download) const;
    void copyOriginalURL(const engine::DQDownload& download) const;
    void copyPath(engine::DQDownload& download) const;
    /// Whether the user holds the keys that ask for the other way of doing a thing.
    [[nodiscard]] bool isAlternateFunctionalityEvent() const;
    /// See `Workspace`.
    void openWithApplication(const QString& path, const QString& application) const;

private:
    void revealFolder(const engine::DownloadPtr& download) const;
    void openOne(engine::DQDownload& download) const;
    void performPrimary(engine::DQDownload& download) const;
    void copy(const Pasteboard& pasteboard) const;

    Surroundings surroundings_;
};

}  // namespace app
