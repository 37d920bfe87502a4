#include "ui/commands/mnemonics.h"

#include <QMenu>
#include <QSet>

namespace ui {
namespace {

/// Where the mark stands, before its letter; -1: there is none.
qsizetype markIn(const QString& text) {
    for (qsizetype index = 0; index + 1 < text.size(); ++index) {
        if (text[index] != u'&') {
            continue;
        }
        if (text[index + 1] != u'&') {
            return index;
        }
        ++index;
    }
    return -1;
}

/// Null: none.
QChar mnemonicOf(const QString& text) {
    const qsizetype mark = markIn(text);
    return mark < 0 ? QChar() : text[mark + 1].toLower();
}

/// The first letter of a word if one is free, else any; -1: all are taken.
qsizetype freeLetter(const QString& text, const QSet<QChar>& taken) {
    qsizetype found = -1;
    for (qsizetype index = 0; index < text.size(); ++index) {
        if (!text[index].isLetter() || taken.contains(text[index].toLower())) {
            continue;
        }
        if (index == 0 || !text[index - 1].isLetter()) {
            return index;
        }
        found = found < 0 ? index : found;
    }
    return found;
}

}  // namespace

void completeMnemonics(const QMenu& menu, const QList<QAction*>& items) {
    QSet<QChar> taken;
    for (const QAction* action : menu.actions()) {
        if (!items.contains(action)) {
            taken.insert(mnemonicOf(action->text()));
        }
    }
    QList<QAction*> without;
    for (QAction* item : items) {
        const QChar mnemonic = mnemonicOf(item->text());
        if (mnemonic.isNull() || taken.contains(mnemonic)) {
            without.append(item);
        } else {
            taken.insert(mnemonic);
        }
    }
    for (QAction* item : without) {
        QString text = item->text();
        if (const qsizetype mark = markIn(text); mark >= 0) {
            text.remove(mark, 1);
        }
        if (const qsizetype letter = freeLetter(text, taken); letter >= 0) {
            taken.insert(text[letter].toLower());
            text.insert(letter, u'&');
        }
        item->setText(text);
    }
}

}  // namespace ui
