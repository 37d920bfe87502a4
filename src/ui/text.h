#pragma once

#include <QCoreApplication>
#include <QString>

#include "links/text/localization.h"

namespace ui {

using links::translatable;

/// A text of the interface in the user's language; the English text is the key.
[[nodiscard]] inline QString translated(const char* english) {
    return QCoreApplication::translate("Orlop", english);
}
[[nodiscard]] inline QString translated(const QString& english) {
    return translated(english.toUtf8().constData());
}

/// What an alert says first, in bold; as rich text that shows all of `text` as it stands.
[[nodiscard]] inline QString alertTitle(const QString& text) {
    return QStringLiteral("<b>%1</b>").arg(text.toHtmlEscaped());
}

}  // namespace ui
