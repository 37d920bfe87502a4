#include "app/rules/folder_menu.h"

#include <algorithm>

#include "app/settings.h"
#include "links/paths/folders.h"
#include "links/paths/path_display.h"
#include "links/paths/path_rules.h"
#include "links/text/localization.h"
#include "links/text/typography.h"
#include "platform/base/log.h"
#include "platform/files/files.h"
#include "platform/text/comparison.h"

namespace app {

using namespace Qt::Literals::StringLiterals;
using Kind = FolderMenuItem::Kind;

namespace {

QStringList sortedFolders(const QStringList& folders, bool byName) {
    std::vector<std::pair<QByteArray, QString>> keyed;
    for (const QString& folder : folders) {
        const QString path = platform::expandTilde(folder);
        keyed.emplace_back(
            platform::naturalSortKey(byName ? links::displayFilename(path)
                                            : links::readablePathRepresentation(path)),
            folder);
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    QStringList sorted;
    for (const auto& [key, folder] : keyed) {
        sorted.append(folder);
    }
    return sorted;
}

/// Puts the menu together from top to bottom.
class Builder {
public:
    Builder(const FolderMenuForm& form, const Folders& folders, const RuleBook& rules,
            const platform::UserDefaults& defaults)
        : form_(form),
          folders_(folders),
          rules_(rules),
          defaults_(defaults),
          setting_(form.setting) {}

    FolderMenu build() {
        addBeginning();
        addRecentFolders();
        addSetting();
        add(Kind::PseudoSeparator);
        add(Kind::Other, u"Other..."_s);
        add(Kind::ClearMenu, u"Clear Menu"_s).isAlternate = true;
        if (form_.appendSpecialCases) {
            addRules();
        }
        if (form_.addExplanation) {
            add(Kind::Separator);
            add(Kind::Explanation, u"Hold shift to specify an individual download folder."_s);
        }
        return std::move(menu_);
    }

private:
    FolderMenuItem& add(Kind kind, const QString& title = {}) {
        menu_.items.push_back({kind, title, {}, {}, false, false, {}});
        return menu_.items.back();
    }

    [[nodiscard]] bool listsRules() const {
        return form_.appendSpecialCases && !rules_.specialCases().isEmpty();
    }

    void addBeginning() {
        if (form_.forSpecialCase) {
            add(Kind::DefaultDownloadsFolder, u"Default Downloads Folder"_s);
            add(Kind::Separator);
            menu_.selectedIndex = setting_ ? -1 : 0;
        } else if (listsRules() && form_.menuIsEmpty) {
            add(Kind::Heading, u"General"_s);
        }
    }

    /// Whether it is the folder in force. Adds nothing for a folder that is not there.
    bool addFolder(const QString& folder, bool withSeparator) {
        const QString path = platform::expandTilde(folder);
        const bool isCurrent = setting_ && links::isEqualToPath(folder, setting_);
        const bool isThere = isCurrent ? links::checkFolderPathAndCreateIfNecessary(path)
                                       : links::isFolderPath(path);
        if (!isThere) {
            return false;
        }
        if (withSeparator) {
            add(Kind::Separator);
        }
        FolderMenuItem& item = add(Kind::Folder, links::displayFilename(path));
        item.suffix = links::spacedDashString() + links::readablePathRepresentation(path);
        item.path = folder;
        if (isCurrent) {
            item.isChecked = form_.setStates;
            menu_.selectedIndex = static_cast<qsizetype>(menu_.items.size()) - 1;
        }
        return isCurrent;
    }

    void addRecentFolders() {
        for (const QString& folder :
             sortedFolders(folders_.recentDownloadsFolders(),
                           defaults_.get(settings::sortDownloadsFoldersByName))) {
            if (addFolder(folder, false)) {
                setting_.reset();
            }
        }
    }

    void addSetting() {
        if (!setting_ || addFolder(*setting_, !form_.appendSpecialCases && !form_.forSpecialCase)) {
            return;
        }
        menu_.selectedIndex = form_.forSpecialCase ? 0 : indexOfDownloadsFolder();
    }

    [[nodiscard]] qsizetype indexOfDownloadsFolder() const {
        const QString folder = platform::abbreviateWithTilde(platform::downloadsUserFolder());
        const auto found =
            std::find_if(menu_.items.begin(), menu_.items.end(), [&](const FolderMenuItem& item) {
                return item.kind == Kind::Folder && item.path == folder;
            });
        if (found != menu_.items.end()) {
            return found - menu_.items.begin();
        }
        platform::log(u"cannot find downloads folder"_s);
        return listsRules() ? 1 : 0;
    }

    void addRules() {
        if (!listsRules()) {
            add(Kind::DefineRule, u"Define Rule..."_s);
            return;
        }
        add(Kind::Separator);
        add(Kind::Heading, u"Rules"_s);
        for (const QVariant& rule : rules_.specialCases()) {
            add(Kind::Rule, ruleFromDictionary(rule.toMap()).title()).rule = rule.toMap();
        }
        add(Kind::PseudoSeparator);
        add(Kind::DefineRule, u"Define Rule..."_s);
        add(Kind::RemoveAllRules, u"Remove All Rules"_s).isAlternate = true;
    }

    const FolderMenuForm& form_;
    const Folders& folders_;
    const RuleBook& rules_;
    const platform::UserDefaults& defaults_;
    /// The folder in force, as long as it has not been found.
    std::optional<QString> setting_;
    FolderMenu menu_;
};

}  // namespace

FolderMenu folderMenu(const FolderMenuForm& form, const Folders& folders, const RuleBook& rules,
                      const platform::UserDefaults& defaults) {
    return Builder(form, folders, rules, defaults).build();
}

QStringList ruleEffects(const Rule& rule, const QString& applicationName) {
    QStringList effects;
    if (!rule.downloadsFolder.isEmpty()) {
        const QString path = platform::expandTilde(rule.downloadsFolder);
        effects.append(links::filledFormat(links::localized("Download to %@"),
                                           {links::displayFilename(path)}));
    }
    if (!applicationName.isEmpty()) {
        effects.append(links::filledFormat(links::localized("Open with %@"), {applicationName}));
    }
    return effects.isEmpty() ? QStringList{links::localized("Ineffective")} : effects;
}

}  // namespace app
