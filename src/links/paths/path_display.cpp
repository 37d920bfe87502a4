#include "links/paths/path_display.h"

#include <QDir>
#include <QFileInfo>

#include "links/paths/path_components.h"
#include "links/text/localization.h"
#include "links/text/typography.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

QStringList componentsBelow(const QString& title, const QString& folder, const QString& path) {
    return QStringList(title) + path.mid(folder.size()).split(u'/', Qt::SkipEmptyParts);
}

bool isAtOrBelow(const QString& path, const QString& folder) {
    return path == folder || path.startsWith(folder + u'/');
}

/// All components of an existing path; none if it does not exist.
QStringList componentsToDisplay(const QString& path) {
    if (path.isEmpty() || !platform::pathExists(path))
        return {};
    const QString absolute = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    const QString home = QDir::homePath();
    if (isAtOrBelow(absolute, home))
        return componentsBelow(localized("Home"), home, absolute);
    const QString volume = platform::volumePath(absolute);
    if (volume != u"/")
        return componentsBelow(lastPathComponent(volume), volume, absolute);
    return componentsBelow(u"/"_s, u"/"_s, absolute);
}

}  // namespace

QString displayFilename(const QString& path) {
    return stringByDeletingPathExtension(lastPathComponent(path));
}

QStringList pathComponentsToDisplayRelativeToPath(const QString& path,
                                                  const std::optional<QString>& basePath,
                                                  bool includeFileName) {
    QStringList components = componentsToDisplay(path);
    const qsizetype baseCount = basePath ? componentsToDisplay(*basePath).size() : 0;
    const bool isRelative = baseCount > 0 && components.size() > baseCount;
    if (!includeFileName && (isRelative || components.size() >= 2))
        components.removeLast();
    return isRelative ? components.mid(baseCount) : components;
}

QString readablePathRepresentationRelativeToPath(const QString& path,
                                                 const std::optional<QString>& basePath,
                                                 bool includeFileName) {
    if (!platform::pathExists(path)) {
        const bool hasVolume = platform::pathExists(platform::volumePath(path));
        const QString reason = localized(hasVolume ? "Not found" : "Currently not available");
        return filledFormat(u"%@ %C %@"_s, {path, dashString(), reason});
    }
    return pathComponentsToDisplayRelativeToPath(path, basePath, includeFileName)
        .join(spacedRightTriangleArrowString());
}

QString readablePathRepresentation(const QString& path) {
    return readablePathRepresentationRelativeToPath(path, std::nullopt, true);
}

}  // namespace links
