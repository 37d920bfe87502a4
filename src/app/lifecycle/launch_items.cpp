#include "app/lifecycle/launch_items.h"

#include <QFileInfo>

#include "platform/files/files.h"

namespace app {

LaunchItems launchItems(const QStringList& items) {
    LaunchItems sorted;
    for (const QString& item : items) {
        if (!item.isEmpty() && platform::pathExists(item)) {
            sorted.paths.append(QFileInfo(item).absoluteFilePath());
        } else if (!item.isEmpty()) {
            sorted.addresses.append(item);
        }
    }
    return sorted;
}

}  // namespace app
