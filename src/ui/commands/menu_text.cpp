#include "ui/commands/menu_text.h"

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
    QString shown = menuText(text, mostCharacters);
    if (menu.layoutDirection() == Qt::RightToLeft) {
        // An address or a path reads from left to right, whatever stands around it.
        shown = QChar(u'\u2068') + shown + QChar(u'\u2069');
    }
    QAction* item = menu.addAction(shown);
    item->setEnabled(false);
    item->setToolTip(text);
    item->setFont(QFontDatabase::systemFont(QFontDatabase::SmallestReadableFont));
    return item;
}

}  // namespace ui
