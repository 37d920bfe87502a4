#include "ui/menus/menu_items.h"

#include <QAction>
#include <QFontDatabase>
#include <QMenu>

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
    constexpr int mostCharacters = 80;
    // An address or a path reads from left to right, whatever stands around it.
    QAction* item =
        menu.addAction(QChar(u'\u2068') + menuText(text, mostCharacters) + QChar(u'\u2069'));
    item->setEnabled(false);
    item->setToolTip(text);
    item->setFont(QFontDatabase::systemFont(QFontDatabase::SmallestReadableFont));
    return item;
}

}  // namespace ui
