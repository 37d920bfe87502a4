#include "ui/help/help_browser.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace ui {

namespace {

constexpr qint64 longestImage = 4 << 20;
constexpr int mostMarks = 500;

const QString pageStyle =
    uR"(
    h2 { margin-top: 16px; }
    p, li { margin-bottom: 6px; }
    code { font-family: monospace; }
    th { text-align: left; }
)"_s;

QString localPath(const QUrl& url) {
    return url.scheme() == "qrc"_L1 ? u':' + url.path() : url.toLocalFile();
}

}  // namespace

HelpBrowser::HelpBrowser(help::DQHelpManager& manager, std::function<QString()> keyTables,
                         QWidget* parent)
    : QTextBrowser(parent), manager_(manager), keyTables_(std::move(keyTables)) {
    setOpenLinks(false);
    document()->setDocumentMargin(16);
    document()->setDefaultStyleSheet(pageStyle);
}

bool HelpBrowser::isInBook(const QUrl& url) const {
    const QString path = QFileInfo(localPath(url)).canonicalFilePath();
    return !path.isEmpty() && path.startsWith(manager_.folder() + u'/');
}

QVariant HelpBrowser::loadResource(int type, const QUrl& name) {
    const QUrl url = source().resolved(name);
    if (type == QTextDocument::HtmlResource)
        return manager_.contentOf(url).replace("<!--com.tarnworks.help.keys-->"_L1, keyTables_());
    QFile file(localPath(url));
    if (type != QTextDocument::ImageResource || !isInBook(url) || file.size() > longestImage ||
        !file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

void HelpBrowser::highlight(const QStringList& words) {
    QList<ExtraSelection> marks;
    for (const QString& word : words) {
        for (QTextCursor found = document()->find(word);
             !found.isNull() && marks.size() < mostMarks; found = document()->find(word, found)) {
            ExtraSelection mark;
            mark.cursor = found;
            mark.format.setBackground(palette().color(QPalette::Highlight));
            mark.format.setForeground(palette().color(QPalette::HighlightedText));
            marks.append(mark);
        }
    }
    setExtraSelections(marks);
    if (!words.isEmpty()) {
        moveCursor(QTextCursor::Start);
        if (find(words.first()))
            setTextCursor([this] {
                QTextCursor cursor = textCursor();
                cursor.clearSelection();
                return cursor;
            }());
    }
}

}  // namespace ui
