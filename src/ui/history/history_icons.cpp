#include "ui/history/history_icons.h"

#include <QGuiApplication>

#include "links/paths/path_components.h"
#include "platform/files/files.h"
#include "ui/art/icons.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

constexpr int iconSize = 16;

/// Looks only where the file was: to search for it takes too long for a whole menu.
QIcon iconOf(const app::HistoryEntry& entry) {
    if (entry.path.isEmpty() || !platform::pathExists(platform::expandTilde(entry.path))) {
        return itemIcon(u"link"_s);
    }
    return fileTypePixmap(links::pathExtension(entry.path), iconSize, qGuiApp->devicePixelRatio());
}

}  // namespace

QIcon HistoryIcons::icon(const app::HistoryEntry& entry) {
    QIcon& icon = _iconsByURLString[entry.originalURL];
    if (icon.isNull()) {
        icon = iconOf(entry);
    }
    return icon;
}

}  // namespace ui
