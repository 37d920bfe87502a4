#include "ui/news/news_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/settings.h"
#include "platform/base/user_defaults.h"
#include "platform/session/workspace.h"
#include "ui/art/icons.h"
#include "ui/settings/note.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

/// Of elements inside one another, as far as that can be counted by their tags, and of tables,
/// which Qt lays out by recursion.
constexpr int deepest = 2000;
constexpr int deepestTables = 50;

class Page final : public QTextBrowser {
public:
    using QTextBrowser::QTextBrowser;

protected:
    QVariant loadResource(int, const QUrl&) override { return {}; }
};

/// Whether more is open at a time than any page needs.
bool isTooDeep(const QString& html) {
    int depth = 0, tables = 0;
    for (qsizetype at = html.indexOf(u'<'); at >= 0; at = html.indexOf(u'<', at + 1)) {
        const QStringView tag = QStringView(html).mid(at + 1, 6);
        const bool closes = tag.startsWith(u'/');
        const bool isTable = tag.mid(closes ? 1 : 0).startsWith(u"table", Qt::CaseInsensitive);
        const int step = closes ? -1 : 1;
        depth = std::max(0, depth + step);
        tables = std::max(0, tables + (isTable ? step : 0));
        if (depth > deepest || tables > deepestTables) {
            return true;
        }
    }
    return false;
}

void open(const QUrl& link) {
    const auto page = desktop::webAddress(link.toString(QUrl::FullyEncoded));
    if (!page || !platform::openURL(*page)) {
        QApplication::beep();
    }
}

}  // namespace

NewsWindow::NewsWindow(platform::UserDefaults& defaults) : text_(new Page(this)) {
    setObjectName(u"newsWindow"_s);
    setWindowTitle(translated("Orlop News"));
    setWindowIcon(applicationIcon());
    setAttribute(Qt::WA_QuitOnClose, false);
    text_->setAccessibleName(windowTitle());
    text_->setOpenLinks(false);
    text_->setFrameShape(QFrame::NoFrame);
    text_->document()->setDocumentMargin(12);
    connect(text_, &QTextBrowser::anchorClicked, this, &open);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(text_, 1);
    layout->addWidget(makeExplanationBar(defaults));
    resize(620, 560);
}

QWidget* NewsWindow::makeExplanationBar(platform::UserDefaults& defaults) {
    auto* bar = new QWidget(this);
    auto* layout = new QVBoxLayout(bar);
    const auto& suppress = desktop::settings::suppressNews;
    auto* box = new QCheckBox(translated("Automatically show news updates in the menu bar"), bar);
    box->setChecked(!defaults.get(suppress));
    connect(box, &QCheckBox::clicked, this,
            [&defaults](bool shows) { defaults.set(suppress, !shows); });
    layout->addWidget(box);
    layout->addWidget(makeNote(
        translated("Orlop News are generated from an online source without uploading any data "
                   "about your setup.\nSo in case you've been wondering about this, let us assure "
                   "you: Orlop does not 'phone home'."),
        bar));
    return bar;
}

void NewsWindow::populateWithNews(const desktop::News& news) {
    if (isTooDeep(news.html)) {
        text_->setPlainText(translated("This page cannot be shown."));
    } else {
        text_->setHtml(news.html);
    }
}

}  // namespace ui
