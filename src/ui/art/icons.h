#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace ui {

/// A drawing of the program's own family by its resource name, such as "DQPause".
///
/// Symbolic drawings take the colour given; badges and the application icon have their own.
/// `size` is in device-independent pixels.
[[nodiscard]] QPixmap symbolPixmap(const QString& name, const QColor& color, int size,
                                   qreal devicePixelRatio);
[[nodiscard]] QPixmap colouredPixmap(const QString& name, int size, qreal devicePixelRatio);

/// A symbolic drawing as an icon that follows the palette of whatever shows it, in every state.
[[nodiscard]] QIcon symbolIcon(const QString& name);
/// The same for items of lists and menus, where the pointer or the keys highlight the whole item.
[[nodiscard]] QIcon itemIcon(const QString& name);

/// The program's own icon, crisp in every size.
[[nodiscard]] QIcon applicationIcon();

/// How a folder, and another program, look in lists and menus. `iconName` is a name in the
/// desktop's theme or a path.
[[nodiscard]] QIcon folderIcon();
[[nodiscard]] QIcon applicationIconNamed(const QString& iconName);

/// The icon of files with an extension (without its dot), from the desktop's theme or drawn here
/// where the theme has none. Kept for the life of the process.
[[nodiscard]] QPixmap fileTypePixmap(const QString& extension, int size, qreal devicePixelRatio);

}  // namespace ui
