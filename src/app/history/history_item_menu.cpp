#include "app/history/history_item_menu.h"

#include "app/commands/open_with.h"
#include "engine/record/checksum.h"
#include "links/paths/path_components.h"
#include "links/text/localization.h"

namespace app {

namespace {

class ItemMenu {
public:
    explicit ItemMenu(const HistoryActions& actions) : actions_(actions) {}

    /// What is known not to be the file that was wanted is not opened.
    void addFileItems(const QString& path, bool isWrongFile) {
        if (!isWrongFile) {
            addOpenItems(path);
        }
        add("Show in Folder", &HistoryActions::reveal, path);
        add("Move to Trash", &HistoryActions::moveToTrash, path);
        menu_.push_back(separator());
        add("Copy Path", &HistoryActions::copyPath, path);
        menu_.push_back(note(path));
        menu_.push_back(separator());
    }

    void addGone(const QString& abbreviatedPath) {
        menu_.push_back(
            note(links::filledFormat(links::localized("Gone from %@"),
                                     {links::stringByDeletingLastPathComponent(abbreviatedPath)})));
        menu_.push_back(separator());
    }

    void addChecksum(const HistoryEntry& entry) {
        const auto checksum = engine::checksumFromText(entry.checksum);
        if (!checksum) {
            return;
        }
        const char* text = entry.isVerified    ? links::translatable("Verified %@")
                           : entry.isWrongFile ? links::translatable("Wrong %@")
                                               : "%@";
        menu_.push_back(note(links::filledFormat(links::localized(text),
                                                 {engine::algorithmTitle(checksum->algorithm)})));
        menu_.push_back(note(checksum->hex()));
        menu_.push_back(separator());
    }

    void addAddressItems(const QString& url) {
        add("Open in Browser", &HistoryActions::openOriginalURL, url);
        add("Copy Original URL", &HistoryActions::copyOriginalURL, url);
        menu_.push_back(note(url));
        menu_.push_back(separator());
        add("Download Again", &HistoryActions::download, url);
    }

    [[nodiscard]] Menu taken() { return std::move(menu_); }

private:
    void addOpenItems(const QString& path) {
        add("Open", &HistoryActions::open, path);
        appendOpenWith(menu_, {path}, [actions = actions_, path](const QString& identifier) {
            actions.openWithApplication(path, identifier);
        });
    }

    void add(const char* title, void (HistoryActions::*perform)(const QString&) const,
             const QString& object) {
        menu_.push_back(action(links::localized(title), [actions = actions_, perform, object] {
            (actions.*perform)(object);
        }));
    }

    const HistoryActions& actions_;
    Menu menu_;
};

}  // namespace

Menu historyItemMenu(const HistoryEntry& entry, const HistoryActions& actions) {
    ItemMenu menu(actions);
    if (const auto path = entry.existingPath()) {
        menu.addFileItems(*path, entry.isWrongFile);
    } else if (!entry.path.isEmpty()) {
        menu.addGone(entry.path);
    }
    menu.addChecksum(entry);
    menu.addAddressItems(entry.originalURL);
    return menu.taken();
}

}  // namespace app
