#include "ui/settings/note.h"

#include <QLabel>

namespace ui {

QLabel* makeNote(const QString& text, QWidget* parent) {
    constexpr double share = 0.9;
    auto* note = new QLabel(text, parent);
    QFont font = note->font();
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * share);
    } else {
        font.setPixelSize(static_cast<int>(font.pixelSize() * share));
    }
    note->setFont(font);
    note->setWordWrap(true);
    return note;
}

}  // namespace ui
