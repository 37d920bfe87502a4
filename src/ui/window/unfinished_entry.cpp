#include "ui/window/unfinished_entry.h"

#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <algorithm>

namespace ui {
namespace {

bool holdsEntry(const QDialog& dialog) {
    const auto lines = dialog.findChildren<QLineEdit*>();
    const auto texts = dialog.findChildren<QPlainTextEdit*>();
    return std::any_of(lines.begin(), lines.end(),
                       [](const QLineEdit* line) {
                           return line->isModified() && !line->text().trimmed().isEmpty();
                       }) ||
           std::any_of(texts.begin(), texts.end(), [](const QPlainTextEdit* text) {
               return text->document()->isModified() && !text->toPlainText().trimmed().isEmpty();
           });
}

}  // namespace

QDialog* unfinishedEntry(const QWidget& window) {
    const auto dialogs = window.findChildren<QDialog*>(Qt::FindDirectChildrenOnly);
    const auto found = std::find_if(dialogs.begin(), dialogs.end(), [](const QDialog* dialog) {
        return dialog->isVisible() && !dialog->isModal() && holdsEntry(*dialog);
    });
    return found == dialogs.end() ? nullptr : *found;
}

}  // namespace ui
