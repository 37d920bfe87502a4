#include "links/paths/path_rules.h"

#include <QDir>
#include <algorithm>
#include <array>

#include "links/names/file_names.h"
#include "links/paths/path_components.h"
#include "platform/files/files.h"

namespace links {
namespace {

// What file systems brought along from other desktops may hold, and the kernel's own trees.
constexpr std::array<QStringView, 15> tabooSystemPaths{u"/automount",   u"/Desktop Folder",
                                                       u"/dev",         u"/etc",
                                                       u"/mach",        u"/mach.sym",
                                                       u"/mach_kernel", u"/opt",
                                                       u"/tmp",         u"/var",
                                                       u"/proc",        u"/sys",
                                                       u"/run",         u"/boot",
                                                       u"/lost+found"};

constexpr std::array<QStringView, 4> networkPaths{u"Network", u"Network/", u"/Network",
                                                  u"/Network/"};

template <typename Paths>
bool isOneOf(const QString& path, const Paths& paths) {
    return std::find(paths.begin(), paths.end(), path) != paths.end();
}

}  // namespace

bool isTabooSystemPath(const QString& path) {
    return isOneOf(path, tabooSystemPaths);
}

bool isNetworkPath(const QString& path) {
    return isOneOf(path, networkPaths);
}

std::optional<QString> itemPathWithBasePath(const QString& item,
                                            const std::optional<QString>& basePath) {
    if (item.isEmpty() || isNegligibleFilename(item))
        return std::nullopt;
    const QString path = basePath ? stringByAppendingPathComponent(*basePath, item) : item;
    // However it is written: "/opt/", "//opt".
    if (isNetworkPath(path) || isTabooSystemPath(QDir::cleanPath(path)))
        return std::nullopt;
    return path;
}

bool isEqualToPath(const QString& path, const std::optional<QString>& other) {
    if (!other || path.compare(*other, Qt::CaseInsensitive) != 0)
        return false;
    return path == *other || platform::isSameFile(path, *other);
}

bool hasPathPrefix(const QString& path, const QString& prefix) {
    return !prefix.isEmpty() && path.startsWith(prefix);
}

}  // namespace links
