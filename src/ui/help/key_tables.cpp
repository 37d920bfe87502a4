#include "ui/help/key_tables.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

const struct {
    const char* title;
    Qt::Key key;
} listKeys[] = {
    {translatable("Pause or resume the selected downloads"), Qt::Key_Space},
    {translatable("Remove the selected downloads"), Qt::Key_Delete},
    {translatable("Select nothing"), Qt::Key_Escape},
};

QString heading(const QString& title) {
    return u"<h3>%1</h3>"_s.arg(title.toHtmlEscaped());
}

QString row(const QString& title, const QString& keys) {
    return u"<tr><td>%1</td><td align='right'>%2</td></tr>"_s.arg(title.toHtmlEscaped(),
                                                                  keys.toHtmlEscaped());
}

QString table(const QString& title, const QString& rows) {
    return rows.isEmpty()
               ? QString()
               : heading(title) + u"<table width='100%' cellpadding='2'>%1</table>"_s.arg(rows);
}

QString plainTitle(const QAction& action) {
    return QString(action.text()).remove(u'&').remove(u"..."_s).remove(u" …"_s);
}

QString rowsOf(const QMenu& menu, const QString& prefix) {
    QString rows;
    for (const QAction* action : menu.actions()) {
        const QString title = prefix + plainTitle(*action);
        if (action->menu() != nullptr) {
            rows += rowsOf(*action->menu(), title + u" \u25b8 "_s);
        } else if (!action->shortcut().isEmpty()) {
            rows += row(title, action->shortcut().toString(QKeySequence::NativeText));
        }
    }
    return rows;
}

}  // namespace

QString keyTables(const QMenuBar& menus) {
    QString html, rows;
    for (const auto& [title, key] : listKeys) {
        rows += row(translated(title), QKeySequence(key).toString(QKeySequence::NativeText));
    }
    html += table(translated("Keys in the list"), rows);
    for (const QAction* menu : menus.actions()) {
        const QString title =
            links::filledFormat(translated("Keys of the %@ menu"), {plainTitle(*menu)});
        html += table(title, rowsOf(*menu->menu(), {}));
    }
    return html;
}

}  // namespace ui
