#include "app/intake/target_place.h"

#include <QDir>
#include <QStandardPaths>
#include <algorithm>

#include "app/rules/folders.h"
#include "engine/rules.h"
#include "platform/files/files.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

bool liesIn(const QString& path, const QString& folder) {
    return !folder.isEmpty() &&
           (folder == u"/"_s || path == folder || path.startsWith(folder + u'/'));
}

bool liesInAny(const QString& path, const QStringList& folders) {
    return std::ranges::any_of(folders, [&](const QString& folder) {
        return liesIn(path, platform::resolvedPath(QDir().absoluteFilePath(folder)));
    });
}

bool hasHiddenPart(QStringView path) {
    const auto parts = path.split(u'/');
    return std::ranges::any_of(parts, [](QStringView part) { return part.startsWith(u'.'); });
}

/// Below the home folder, or the system's root.
QStringView partBelowHome(const QString& path) {
    const QString home = platform::resolvedPath(QDir::homePath());
    return QStringView(path).sliced(home != u"/"_s && liesIn(path, home) ? home.size() : 0);
}

QStringList foldersOfPrograms() {
    QStringList folders = qEnvironmentVariable("PATH").split(u':', Qt::SkipEmptyParts);
    for (const auto location :
         {QStandardPaths::GenericConfigLocation, QStandardPaths::GenericDataLocation,
          QStandardPaths::ApplicationsLocation}) {
        folders += QStandardPaths::standardLocations(location);
    }
    // FHS 3.0, chapters 3 and 4: what belongs to the system and not to its users.
    folders += {u"/bin"_s,  u"/boot"_s, u"/dev"_s, u"/etc"_s, u"/lib"_s, u"/opt"_s,
                u"/proc"_s, u"/sbin"_s, u"/sys"_s, u"/usr"_s, u"/var"_s};
    folders.append(QDir::homePath() + u"/bin"_s);
    return folders;
}

}  // namespace

QStringList familiarFolders(platform::UserDefaults& defaults, const engine::Rules& rules) {
    QStringList familiar = generalFolderAndThoseOfRules(defaults, rules.specialCases()) +
                           Folders(defaults).recentDownloadsFolders();
    for (QString& folder : familiar)
        folder = platform::resolvedPath(platform::expandTilde(folder));
    return familiar;
}

TargetPlace placeOfTarget(const QString& target, const QStringList& familiar) {
    const QString expanded = platform::expandTilde(target);
    if (!expanded.startsWith(u'/'))
        return TargetPlace::Risky;
    const QString path = platform::resolvedPath(expanded);
    if (path.endsWith(u".desktop"_s, Qt::CaseInsensitive))
        return TargetPlace::Risky;
    for (const QString& folder : familiar) {
        if (liesIn(path, folder) && !hasHiddenPart(QStringView(path).sliced(folder.size())))
            return TargetPlace::Familiar;
    }
    return hasHiddenPart(partBelowHome(path)) || liesInAny(path, foldersOfPrograms())
               ? TargetPlace::Risky
               : TargetPlace::Elsewhere;
}

}  // namespace app
