#include "engine/paths/download_folder.h"

#include <QVariant>

#include "engine/context.h"
#include "engine/record/download_record.h"
#include "engine/rules.h"
#include "engine/settings.h"
#include "links/format/dates.h"
#include "links/names/file_names.h"
#include "links/paths/folders.h"
#include "links/paths/path_components.h"
#include "links/paths/path_rules.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

/// A folder chosen for one download counts only if it is another than the general one, so that
/// choosing the general one beats no rule and gets its subfolder.
bool isRelevantDownloadBasePath(const QString& path, const QString& generalPath) {
    return !path.isEmpty() && !links::isEqualToPath(path, generalPath) &&
           links::checkFolderPathAndCreateIfNecessary(path);
}

QString chosenFolder(const DownloadRecord& download, const QString& generalPath) {
    const UserSettings& settings = download.userSettings();
    const QString fileFolder = links::stringByDeletingLastPathComponent(
        platform::expandTilde(settings.string(keys::downloadFile)));
    if (isRelevantDownloadBasePath(fileFolder, generalPath))
        return fileFolder;
    const QString folder = platform::expandTilde(settings.string(keys::downloadFolder));
    return isRelevantDownloadBasePath(folder, generalPath) ? folder : QString();
}

}  // namespace

QString downloadBasePath(const DownloadRecord& download) {
    const QString general = platform::expandTilde(download.context().defaults.folderPathForKey(
        settings::downloadsFolder.name(), platform::downloadsUserFolder()));
    if (const QString chosen = chosenFolder(download, general); !chosen.isEmpty())
        return chosen;
    if (const QString byRule = specialCaseDownloadBasePath(download); !byRule.isEmpty())
        return byRule;
    QString folder = general;
    if (!links::checkFolderPathAndCreateIfNecessary(folder)) {
        folder = platform::downloadsUserFolder();
        static_cast<void>(links::checkFolderPathAndCreateIfNecessary(folder));
    }
    return downloadPathWithSubfolder(folder, settings::subdivisionFormatDefault, download);
}

QString specialCaseDownloadBasePath(const DownloadRecord& download) {
    for (const QVariant& element : download.context().rules.specialCases()) {
        const QVariantMap rule = element.toMap();
        if (!download.matchesSpecialCase(rule))
            continue;
        const QString folder = platform::expandTilde(rule.value(u"Downloads Folder"_s).toString());
        if (!folder.isEmpty() && links::checkFolderPathAndCreateIfNecessary(folder))
            return downloadPathWithSubfolder(folder, settings::subdivisionFormatRules, download);
    }
    return {};
}

QString downloadPathWithSubfolder(const QString& path, const platform::Setting<QString>& format,
                                  const DownloadRecord& download) {
    const Context& context = download.context();
    const QString dateFormat = context.defaults.get(format);
    if (path.isEmpty() || dateFormat.isEmpty())
        return path;
    constexpr qint64 byDateOfDownload = 1;
    const QDateTime date = context.defaults.get(settings::subdivisionDate) == byDateOfDownload
                               ? download.date()
                               : context.wallNow();
    const QString name = links::cleanPathByReplacingDashesWithString(
        links::dateStringWithFormat(date.toLocalTime(), dateFormat), std::nullopt);
    if (name.isEmpty())
        return path;
    const QString subfolder = links::stringByAppendingPathComponent(path, name);
    return links::checkFolderPathAndCreateIfNecessary(subfolder) ? subfolder : path;
}

}  // namespace engine
