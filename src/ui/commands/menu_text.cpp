#include "ui/commands/menu_text.h"

#include <QAction>
#include <QMenu>

#include "ui/art/theme.h"

namespace ui {

QString menuText(const QString& text, int mostCharacters) {
    QString line = text.simplified();
    if (line.size() > mostCharacters) {
        const qsizetype head = mostCharacters / 2;
        line = line.left(head) + QChar(u'\u2026') + line.right(mostCharacters - head - 1);
    }
    return line.replace(u'&', QStringLiteral("&&"));
}

namespace {

/// What a menu tells is drawn like what cannot be chosen, which is mostly too pale to be read.
void darkenNotes(QMenu& menu) {
    QPalette palette;
    const QColor color = noteColor(palette);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, color);
    }
    menu.setPalette(palette);
}

}  // namespace

QAction* addInertItem(QMenu& menu, const QString& text) {
    constexpr int mostCharacters = 80;
    darkenNotes(menu);
    QString shown = menuText(text, mostCharacters);
    if (menu.layoutDirection() == Qt::RightToLeft) {
        // An address or a path reads from left to right, whatever stands around it.
        shown = QChar(u'\u2068') + shown + QChar(u'\u2069');
    }
    QAction* item = menu.addAction(shown);
    item->setEnabled(false);
    item->setToolTip(text);
    item->setFont(noteFont(menu.font()));
    return item;
}

}  // namespace ui
