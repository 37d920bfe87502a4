#include "links/paths/available_path.h"

#include "links/names/safe_file_name.h"
#include "links/paths/path_components.h"
#include "links/paths/path_rules.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace links {

AvailablePath availablePathWithCurrentPath(const QString& path,
                                           const std::optional<QString>& currentPath,
                                           const QString& counterPrefix, bool preserveExtension,
                                           qsizetype reservedBytes) {
    const QString folder = stringByDeletingLastPathComponent(path);
    const QString name = fittedFileName(lastPathComponent(path), reservedBytes);
    const QString wanted = stringByAppendingPathComponent(folder, name);
    if (!platform::pathExists(wanted))
        return {wanted, false};

    const QString extension = preserveExtension ? pathExtension(name) : QString();
    const QString base = extension.isEmpty() ? name : stringByDeletingPathExtension(name);
    const QString dotAndExtension = extension.isEmpty() ? QString() : u'.' + extension;
    for (quint64 counter = 1; counter != 0; ++counter) {
        const QString tail = counterPrefix + QString::number(counter) + dotAndExtension;
        const QString numbered = fittedFileName(base, reservedBytes + utf8Length(tail)) + tail;
        const QString candidate = stringByAppendingPathComponent(folder, numbered);
        if (isEqualToPath(candidate, currentPath))
            return {candidate, true};
        if (!platform::pathExists(candidate))
            return {candidate, false};
    }
    return {};
}

QString availablePath(const QString& path, qsizetype reservedBytes) {
    return availablePathWithCurrentPath(path, std::nullopt, u" "_s, true, reservedBytes).path;
}

}  // namespace links
