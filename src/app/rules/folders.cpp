#include "app/rules/folders.h"

#include "app/settings.h"
#include "engine/settings.h"
#include "platform/files/files.h"

namespace app {

using namespace Qt::Literals::StringLiterals;
using platform::abbreviateWithTilde;

Folders::Folders(platform::UserDefaults& defaults) : defaults_(defaults) {}

QStringList Folders::defaultFolders() {
    return {abbreviateWithTilde(platform::desktopUserFolder()),
            abbreviateWithTilde(platform::downloadsUserFolder())};
}

QString Folders::downloadsFolder() const {
    return abbreviateWithTilde(defaults_.folderPathForKey(engine::settings::downloadsFolder.name(),
                                                          platform::downloadsUserFolder()));
}

void Folders::setDownloadsFolder(const QString& path) {
    defaults_.setFolderPath(engine::settings::downloadsFolder.name(), path);
    QStringList recent = recentDownloadsFolders();
    if (const QString abbreviated = abbreviateWithTilde(path); !recent.contains(abbreviated)) {
        recent.append(abbreviated);
        defaults_.set(settings::recentDownloadsFolders, recent);
    }
}

QStringList Folders::recentDownloadsFolders() const {
    const QStringList recent = defaults_.stringArrayForKey(settings::recentDownloadsFolders.name());
    return recent.isEmpty() ? defaultFolders() : recent;
}

void Folders::clearRecentDownloadFolders() {
    defaults_.set(settings::recentDownloadsFolders, QStringList{downloadsFolder()});
}

QStringList generalFolderAndThoseOfRules(const platform::UserDefaults& defaults,
                                         const QVariantList& specialCases) {
    QStringList folders{defaults.folderPathForKey(engine::settings::downloadsFolder.name(),
                                                  platform::downloadsUserFolder())};
    for (const QVariant& rule : specialCases)
        folders.append(rule.toMap().value(u"Downloads Folder"_s).toString());
    folders.removeAll({});
    for (QString& folder : folders)
        folder = platform::expandTilde(folder);
    folders.removeDuplicates();
    return folders;
}

}  // namespace app
