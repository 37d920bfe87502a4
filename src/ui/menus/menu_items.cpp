#include "ui/menus/menu_items.h"

#include <QList>

#include "ui/commands/menu_items.h"

namespace ui {

QString menuText(const QString& text, int mostCharacters) {
    QString line = text.simplified();
    if (line.size() > mostCharacters) {
        const qsizetype head = mostCharacters / 2;
        line = line.left(head) + QChar(u'\u2026') + line.right(mostCharacters - head - 1);
    }
    return line.replace(u'&', QStringLiteral("&&"));
}

QAction* addInertItem(QMenu& menu, const QString& text) {
    return addMenuItems(menu, {app::note(text)}).first();
}

}  // namespace ui
