#include "ui/help/help_text.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

struct Chapter {
    const char* title;
    std::initializer_list<const char*> paragraphs;
};

const Chapter chapters[] = {
    {translatable("Adding downloads"),
     {translatable("Paste addresses, drop them on the window, or enter them in the panel that "
                   "Open URLs brings up. Any text will do: Orlop finds the addresses in it."),
      translatable("{1-20}, {01-20}, {a-f} or {front,back} in an address stands for a series."),
      translatable(
          "Hold Shift while pasting or dropping to choose a folder for these downloads.")}},
    {translatable("Working with the list"),
     {translatable("The commands of the Queue menu are about the selected downloads, or about all "
                   "that the list shows if none is selected."),
      translatable("Drag rows to put the queue in order, and finished files out of the list to "
                   "wherever you need them.")}},
    {translatable("Folders and rules"),
     {translatable("A rule sends downloads from certain hosts or of certain types to a folder of "
                   "their own and opens them with a program. Rules are listed in the File menu and "
                   "in the settings.")}},
    {translatable("Finding a download again"),
     {translatable("An entry of the History menu opens its file and offers what else can be done "
                   "with it. To search, type while the menu is open.")}},
};

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

QString guide() {
    QString html;
    for (const Chapter& chapter : chapters) {
        html += heading(translated(chapter.title));
        for (const char* paragraph : chapter.paragraphs) {
            html += u"<p>%1</p>"_s.arg(translated(paragraph).toHtmlEscaped());
        }
    }
    return html;
}

}  // namespace

QString helpText(const QMenuBar& menus) {
    QString html = guide();
    QString rows;
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
