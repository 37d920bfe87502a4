#include "app/commands/context_menu.h"

#include <algorithm>

#include "app/commands/bulk_commands.h"
#include "app/commands/commands.h"
#include "app/commands/folder_items.h"
#include "app/commands/open_with.h"
#include "app/rows/rows.h"
#include "app/settings.h"
#include "engine/lifecycle/download.h"
#include "engine/record/user_settings.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/base/user_defaults.h"

namespace app {

using namespace Qt::Literals::StringLiterals;
using links::localized;

namespace {

constexpr std::size_t mostListed = 10;

/// Puts the menu together from top to bottom.
class ContextMenu {
public:
    ContextMenu(const Commands& commands, const Downloads& downloads)
        : commands_(commands),
          around_(commands.surroundings()),
          queue_(around_.controller.queue()),
          actions_(around_.controller.rows().actions()),
          downloads_(downloads) {}

    Menu build() {
        if (downloads_.size() > 1) {
            addSeveral();
        } else if (downloads_.size() == 1) {
            addSingle(downloads_.front());
        }
        addCommonEnd();
        return std::move(menu_);
    }

private:
    void add(const QString& title, std::function<void()> perform) {
        menu_.push_back(action(title, std::move(perform)));
    }
    void add(const QString& title, const engine::DownloadPtr& download,
             void (engine::DQDownload::*operation)()) {
        add(title, [download, operation] { (download.get()->*operation)(); });
    }

    template <typename Download>
    void add(const QString& title, const engine::DownloadPtr& download,
             void (RowActions::*operation)(Download&) const) {
        add(title, [actions = actions_, download, operation] { (actions.*operation)(*download); });
    }

    void addSeveral() {
        const auto is = [](auto status) {
            return [status](const auto& download) { return download->status() == status; };
        };
        const bool areUnfinished =
            std::all_of(downloads_.begin(), downloads_.end(), [](const auto& download) {
                return engine::matchesStatusMask(download->status(), engine::unfinishedStatuses);
            });
        const auto paused =
            std::count_if(downloads_.begin(), downloads_.end(), is(engine::DQDownloadStatusPaused));
        const bool arePaused = paused == static_cast<qsizetype>(downloads_.size());
        if (areUnfinished && (arePaused || paused == 0)) {
            add(arePaused ? localized("Start Downloads") : localized("Pause Downloads"),
                [&queue = queue_, downloads = downloads_] { togglePause(queue, downloads); });
        }
        addOpenItems();
        add(localized("Remove"),
            [&queue = queue_, downloads = downloads_] { withdraw(queue, downloads); });
        menu_.push_back(separator());
        if (commands_.isOffered(Command::LimitSpeed) &&
            downloads_ == around_.controller.selectedDownloads()) {
            menu_.push_back(commandItem(commands_, Command::LimitSpeed));
        }
        add(localized("Open in Browser"), [around = around_, downloads = downloads_] {
            openOriginalURLs(around.controller.rows(), downloads, around.frontEnd.questions);
        });
        add(localized("Copy URLs"), [downloads = downloads_, around = around_] {
            copyOriginalURLs(downloads, around.frontEnd);
        });
        addAddresses();
        menu_.push_back(separator());
    }

    void addAddresses() {
        const std::size_t shown =
            downloads_.size() <= mostListed ? downloads_.size() : mostListed - 1;
        for (std::size_t index = 0; index < shown; ++index) {
            menu_.push_back(note(downloads_[index]->originalURLString()));
        }
        if (const std::size_t rest = downloads_.size() - shown; rest > 0) {
            menu_.push_back(
                note(links::filledFormat(localized("(%lu more)"), {QString::number(rest)})));
        }
    }

    void addSingle(const engine::DownloadPtr& download) {
        const bool fileExists = download->fileExists();
        switch (download->status()) {
            case engine::DQDownloadStatusDone:
                if (fileExists) {
                    addFinished(download);
                }
                break;
            case engine::DQDownloadStatusAborted:
                addFailed(download);
                break;
            case engine::DQDownloadStatusPaused:
            case engine::DQDownloadStatusQueued:
            case engine::DQDownloadStatusDownloading:
                addUnfinished(download);
                break;
        }
        if (download->status() == engine::DQDownloadStatusAborted || download->isInterrupted()) {
            addPage(download);
        }
        addRowCommands(download, {Command::Verify, Command::ChangeAddress, Command::LimitSpeed});
        add(localized("Open in Browser"), download, &RowActions::openOriginalURL);
        add(fileExists ? localized("Copy Original URL") : localized("Copy URL"), download,
            &RowActions::copyOriginalURL);
        menu_.push_back(note(download->originalURLString()));
        addDebugLogging(download);
        menu_.push_back(separator());
    }

    /// In detail for this one alone, for whoever looks into what goes wrong with it.
    void addDebugLogging(const engine::DownloadPtr& download) {
        add(localized("Debug Logging"),
            [download] { download->setDebugLogged(!download->isDebugLogged()); });
        menu_.back().state.isChecked = download->isDebugLogged() || platform::isDebugLogEnabled();
        menu_.back().state.isEnabled = !platform::isDebugLogEnabled();
    }

    void addUnfinished(const engine::DownloadPtr& download) {
        const bool isPaused = download->status() == engine::DQDownloadStatusPaused;
        const bool isQueued = download->status() == engine::DQDownloadStatusQueued;
        if (isPaused) {
            add(localized("Start Download"), download, &engine::DQDownload::togglePause);
        }
        if (isQueued ||
            (isPaused && around_.controller.anyDownloadMatchesStatusMask(engine::activeStatuses))) {
            add(localized("Start Download Now"), download, &engine::DQDownload::startDownload);
        }
        if (!isPaused) {
            add(localized("Pause Download"), download, &engine::DQDownload::togglePause);
        }
        add(localized("Remove"), download, &engine::DQDownload::withdraw);
        menu_.push_back(separator());
        if (!download->pathToReveal().isEmpty()) {
            add(localized("Show in Folder"), download, &RowActions::reveal);
            menu_.push_back(separator());
        }
        if ((isPaused || isQueued) &&
            !download->userSettings().contains(engine::keys::responseURL)) {
            add(localized("Accelerate"), [&controller = around_.controller, download] {
                download->toggleAcceleration();
                controller.updateDownloadListDisplay();
            });
            menu_.back().state.isChecked = download->accelerates();
            menu_.push_back(separator());
        }
    }

    /// Those that somebody has for single rows.
    void addRowCommands(const engine::DownloadPtr& download,
                        std::initializer_list<Command> commands) {
        const std::size_t before = menu_.size();
        for (const Command command : commands) {
            if (const auto* behaviour = commands_.rowBehaviour(command)) {
                add(commandTitle(command), [behaviour, download] { behaviour->perform(download); });
                menu_.back().state.isEnabled = behaviour->isPossible(*download);
            }
        }
        if (menu_.size() > before) {
            menu_.push_back(separator());
        }
    }

    void addFinished(const engine::DownloadPtr& download) {
        addOpenItems();
        add(localized("Show in Folder"), download, &RowActions::reveal);
        add(localized("Move to Trash"), download, &engine::DQDownload::removeAndMoveToTrash);
        menu_.push_back(separator());
        add(localized("Copy Path"), download, &RowActions::copyPath);
        menu_.push_back(note(download->path()));
        menu_.push_back(pseudoSeparator());
    }

    void addFailed(const engine::DownloadPtr& download) {
        DQMainController& controller = around_.controller;
        add(localized("Retry"), [&controller, download] { controller.retry({download}); });
        if (controller.numberOfFailedDownloads() > 1) {
            add(localized("Retry All"), [&controller] {
                controller.retry(
                    controller.downloadsMatchingStatusMask(engine::DQDownloadStatusAborted));
            });
        }
        menu_.push_back(separator());
    }

    /// A link that has expired is had again where it was found; what the browser then hands over
    /// can go on with what is there.
    void addPage(const engine::DownloadPtr& download) {
        const auto page = platform::Url::parse(download->userSettings().string(engine::keys::page));
        if (page && !page->isEmpty()) {
            add(localized("Get It Again from Its Page"), download, &RowActions::openPage);
        }
    }

    void addOpenItems() {
        QStringList paths;
        for (const engine::DownloadPtr& download : downloads_) {
            if (download->status() != engine::DQDownloadStatusDone || download->isWrongFile() ||
                !download->fileExists()) {
                return;
            }
            paths.append(download->path());
        }
        add(localized("Open"), [actions = actions_, downloads = downloads_, around = around_] {
            open(actions, downloads, around.frontEnd.questions);
        });
        appendOpenWith(menu_, paths,
                       [actions = actions_, paths, around = around_](const QString& identifier) {
                           if (!mayOpenFiles(static_cast<std::size_t>(paths.size()),
                                             around.frontEnd.questions)) {
                               return;
                           }
                           for (const QString& path : paths) {
                               actions.openWithApplication(path, identifier);
                           }
                       });
    }

    void addCommonEnd() {
        menu_.push_back(submenu(localized("Download to"), downloadsFolderItems(commands_, true)));
        menu_.push_back(separator());
        menu_.push_back(
            submenu(localized("Sort by"), commandItems(commands_, Command::ChangeSorting)));
        menu_.push_back(commandItem(commands_, Command::ToggleLocationKeyDisplayNames));
        menu_.push_back(submenu(localized("Progress Indicator"),
                                commandItems(commands_, Command::ChangeProgressBarStyle)));
        menu_.push_back(separator());
        menu_.push_back(commandItem(commands_, Command::ToggleAutoStart));
        menu_.push_back(commandItem(commands_, Command::ToggleAutoShutDown));
        if (around_.controller.numberOfDownloads() > 1) {
            menu_.push_back(separator());
            menu_.push_back(submenu(localized("Rearrange Queue by"),
                                    commandItems(commands_, Command::Rearrange)));
        }
    }

    const Commands& commands_;
    Commands::Surroundings around_;
    engine::DownloadQueue& queue_;
    const RowActions actions_;
    const Downloads downloads_;
    Menu menu_;
};

}  // namespace

Menu contextMenu(const Commands& commands, const Downloads& downloads) {
    return ContextMenu(commands, downloads).build();
}

Menu statusItemMenu(const Commands& commands, Menu history) {
    Menu menu{commandItem(commands, Command::ShowDownloadWindow)};
    const auto addOffered = [&commands](Menu& to, Command command) {
        if (commands.isOffered(command)) {
            to.push_back(commandItem(commands, command));
        }
    };
    addOffered(menu, Command::ShowPreferences);
    if (commands.surroundings().frontEnd.presence.areAlternateFunctionalityModifiersHeld()) {
        addOffered(menu, Command::ToggleDebugLogging);
    }
    menu.push_back(separator());
    if (!history.empty()) {
        menu.push_back(submenu(localized("History"), std::move(history)));
        menu.push_back(separator());
    }
    Menu program;
    for (const Command command :
         {Command::ShowAbout, Command::CheckForUpdates, Command::ShowHelp}) {
        addOffered(program, command);
    }
    program.push_back(separator());
    addOffered(program, Command::Quit);
    if (commands.surroundings().defaults.get(settings::useStatusItemMetaSubmenu)) {
        menu.push_back(submenu(u"Orlop"_s, std::move(program)));
    } else {
        append(menu, std::move(program));
    }
    return menu;
}

Downloads clickedDownloads(DQMainController& controller, qsizetype row) {
    const engine::DownloadPtr clicked = controller.downloadAtSortedAndFilteredIndex(row);
    if (!clicked) {
        return {};
    }
    Downloads selected = controller.selectedDownloads();
    const bool isSelected = std::find(selected.begin(), selected.end(), clicked) != selected.end();
    return isSelected ? selected : Downloads{clicked};
}

}  // namespace app
