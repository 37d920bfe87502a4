#include "ui/settings/note.h"

#include <QLabel>

#include "ui/art/theme.h"

namespace ui {

QLabel* makeNote(const QString& text, QWidget* parent) {
    auto* note = new QLabel(text, parent);
    note->setFont(noteFont(note->font()));
    note->setWordWrap(true);
    return note;
}

}  // namespace ui
