#include "ui/help/help_window.h"

#include <QApplication>
#include <QCompleter>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStringListModel>
#include <QToolButton>
#include <QVBoxLayout>

#include "help/default_link.h"
#include "help/settings.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"
#include "platform/net/url.h"
#include "platform/session/workspace.h"
#include "ui/help/contents_menu.h"
#include "ui/help/help_browser.h"
#include "ui/help/quick_access_bar.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

namespace {

constexpr int sideLength = 800;
constexpr int headerHeight = 60;
constexpr int titleSize = 28;

/// The language of the interface, then what the desktop prefers.
QStringList preferredLanguages() {
    return QStringList(QLocale().bcp47Name()) + QLocale::system().uiLanguages();
}

QSize windowDefaultContentSizeForScreen(const QScreen* screen) {
    const QSize wanted(sideLength, sideLength);
    return screen == nullptr ? wanted : wanted.boundedTo(screen->availableSize() * 0.9);
}

}  // namespace

HelpWindow::HelpWindow(platform::UserDefaults& defaults, std::function<QString()> keyTables,
                       QWidget* parent)
    : QWidget(parent, Qt::Window),
      defaults_(defaults),
      manager_(platform::userDataFolder(), preferredLanguages()),
      browser_(new HelpBrowser(manager_, std::move(keyTables), this)),
      contents_(
          new ContentsMenu(manager_, defaults.get(help::settings::listAnchorsInSubmenus), this)),
      quickAccess_(
          new QuickAccessBar(manager_, defaults.get(help::settings::centerQuickAccess), this)),
      suggestions_(new QStringListModel(this)) {
    setWindowTitle(help::DQHelpManager::windowTitle());
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeToolbar());
    layout->addWidget(makeHeader());
    layout->addWidget(quickAccess_);
    layout->addWidget(browser_, 1);
    browser_->setFrameShape(QFrame::NoFrame);
    browser_->setAccessibleName(windowTitle());
    const auto open = [this](const QString& target) { openPageAtRelativePathWithFragment(target); };
    connect(contents_, &ContentsMenu::chosen, this, open);
    connect(quickAccess_, &QuickAccessBar::chosen, this, open);
    connect(browser_, &QTextBrowser::anchorClicked, this, &HelpWindow::follow);
    connect(browser_, &QTextBrowser::sourceChanged, this, [this](const QUrl& url) {
        setCurrentPageRepresentation(manager_.relativePathOf(url));
    });
    addKeys();
    resize(windowDefaultContentSizeForScreen(QWidget::screen()));
    browser_->setFocus();
}

HelpWindow::~HelpWindow() = default;

QWidget* HelpWindow::makeToolbar() {
    auto* bar = new QWidget(this);
    auto* contents = new QToolButton(bar);
    contents->setText(translated("Contents"));
    contents->setPopupMode(QToolButton::InstantPopup);
    contents->setMenu(contents_);
    contents->setFocusPolicy(Qt::StrongFocus);
    searchField = new QLineEdit(bar);
    searchField->setPlaceholderText(translated("Search the Manual"));
    searchField->setAccessibleName(searchField->placeholderText());
    searchField->setClearButtonEnabled(true);
    searchField->setMaximumWidth(280);
    auto* completer = new QCompleter(suggestions_, searchField);
    completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    completer->setMaxVisibleItems(12);
    searchField->setCompleter(completer);
    connect(searchField, &QLineEdit::textEdited, this, [this](const QString& text) {
        suggest(text);
        if (text.isEmpty())
            browser_->highlight({});
    });
    connect(
        completer, qOverload<const QString&>(&QCompleter::activated), this,
        [this](const QString& title) { selectSearchSuggestion(title); }, Qt::QueuedConnection);
    connect(searchField, &QLineEdit::returnPressed, this, [this] {
        if (suggestions_->rowCount() > 0)
            selectSearchSuggestion(suggestions_->stringList().first());
    });
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(6, 4, 6, 4);
    row->addWidget(contents);
    row->addStretch();
    row->addWidget(searchField, 1);
    return bar;
}

QWidget* HelpWindow::makeHeader() {
    auto* header = new QWidget(this);
    header->setFixedHeight(headerHeight);
    const auto button = [header](Qt::ArrowType arrow) {
        auto* made = new QToolButton(header);
        made->setArrowType(arrow);
        made->setAutoRaise(true);
        made->setFocusPolicy(Qt::StrongFocus);
        QSizePolicy policy = made->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        made->setSizePolicy(policy);
        return made;
    };
    // They stand where the text begins and ends.
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    previousPageButton = button(isMirrored ? Qt::RightArrow : Qt::LeftArrow);
    nextPageButton = button(isMirrored ? Qt::LeftArrow : Qt::RightArrow);
    pageTitleField = new QLabel(header);
    pageTitleField->setAlignment(Qt::AlignCenter);
    QFont font = pageTitleField->font();
    font.setPointSizeF(titleSize * 0.75);
    pageTitleField->setFont(font);
    auto* row = new QHBoxLayout(header);
    row->addWidget(previousPageButton);
    row->addWidget(pageTitleField, 1);
    row->addWidget(nextPageButton);
    for (QToolButton* each : {previousPageButton, nextPageButton})
        connect(each, &QToolButton::clicked, this, [this, each] {
            openPageAtRelativePath(each->property("path").toString(), {}, {});
        });
    return header;
}

void HelpWindow::addKeys() {
    const auto add = [this](const QKeySequence& key, auto act) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, act);
    };
    add(QKeySequence::Find, [this] { beginSearch(); });
    add(QKeySequence::Close, [this] { close(); });
    add(QKeySequence::Cancel, [this] { leaveSearchOrClose(); });
    add(QKeySequence::Back, [this] { browser_->backward(); });
    add(QKeySequence::Forward, [this] { browser_->forward(); });
    add(Qt::CTRL | Qt::Key_PageUp, [this] { previousPageButton->click(); });
    add(Qt::CTRL | Qt::Key_PageDown, [this] { nextPageButton->click(); });
}

bool HelpWindow::openPage(const QString& page, const QString& fragment, bool force) {
    show();
    raise();
    activateWindow();
    if (page.isEmpty() && !force && !currentRelativePath().isEmpty())
        return true;
    const auto& pages = manager_.pageRepresentations();
    const QString first = pages.empty() ? QString() : pages.front().path;
    const QString path = page.isEmpty() ? first : page + u".html"_s;
    if (openPageAtRelativePath(path, fragment, {}))
        return true;
    platform::log(u"cannot open help page: %1"_s.arg(path));
    QApplication::beep();
    return false;
}

bool HelpWindow::openPageAtRelativePath(const QString& path, const QString& fragment,
                                        const QStringList& highlightWords) {
    QUrl url = manager_.pageURLsByRelativePath().value(path);
    if (!url.isValid())
        return false;
    if (!fragment.isEmpty())
        url.setFragment(fragment, QUrl::DecodedMode);
    browser_->setSource(url, QTextDocument::HtmlResource);
    if (!fragment.isEmpty())
        browser_->scrollToAnchor(fragment);
    browser_->highlight(highlightWords);
    return true;
}

bool HelpWindow::openPageAtRelativePathWithFragment(const QString& target) {
    const qsizetype hash = target.lastIndexOf(u'#');
    return hash < 0 ? openPageAtRelativePath(target, {}, {})
                    : openPageAtRelativePath(target.left(hash), target.sliced(hash + 1), {});
}

QString HelpWindow::currentRelativePath() {
    return manager_.relativePathOf(browser_->source());
}

void HelpWindow::beginSearch() {
    searchField->setFocus();
    searchField->selectAll();
}

void HelpWindow::leaveSearchOrClose() {
    if (searchField->text().isEmpty()) {
        close();
        return;
    }
    searchField->clear();
    suggest({});
    browser_->highlight({});
    browser_->setFocus();
}

void HelpWindow::suggest(const QString& query) {
    query_ = query;
    suggestions_->setStringList(manager_.searchSuggestionsForQuery(query, currentRelativePath()));
}

void HelpWindow::selectSearchSuggestion(const QString& title) {
    for (const help::HelpItem& item : manager_.itemsWithSearchString(query_, 0)) {
        if (item.title == title) {
            searchField->setText(query_);
            openPageAtRelativePath(item.path, {}, item.words);
            return;
        }
    }
}

void HelpWindow::follow(const QUrl& link) {
    const QString scheme = link.scheme();
    if (scheme == QLatin1StringView(help::helpScheme)) {
        followDefaultLink(link.toString(QUrl::FullyEncoded));
    } else if (scheme == "http"_L1 || scheme == "https"_L1) {
        const auto page = platform::Url::parse(link.toString(QUrl::FullyEncoded));
        if (!page || !platform::openURL(*page))
            QApplication::beep();
    } else {
        const QUrl target = browser_->source().resolved(link);
        if (!openPageAtRelativePath(manager_.relativePathOf(target),
                                    target.fragment(QUrl::FullyDecoded), {}))
            platform::log(u"a link of the manual leads nowhere: %1"_s.arg(link.toString()));
    }
}

void HelpWindow::followDefaultLink(const QString& link) {
    const auto parsed = help::parsedDefaultLink(link);
    if (!parsed)
        return;
    const help::DefaultChange change = help::followed(*parsed, defaults_);
    QMessageBox alert(QMessageBox::Information, windowTitle(), alertTitle(change.message()),
                      QMessageBox::Ok, this);
    alert.setInformativeText(change.informativeText().toHtmlEscaped());
    const QPushButton* revert = change.didAnything()
                                    ? alert.addButton(change.revertTitle(), QMessageBox::RejectRole)
                                    : nullptr;
    alert.setDefaultButton(QMessageBox::Ok);
    alert.exec();
    if (revert != nullptr && alert.clickedButton() == revert)
        change.revert(defaults_);
}

void HelpWindow::setCurrentPageRepresentation(const QString& path) {
    const auto& pages = manager_.pageRepresentations();
    const auto page =
        std::find_if(pages.begin(), pages.end(),
                     [&](const help::HelpPage& candidate) { return candidate.path == path; });
    const bool isKnown = page != pages.end();
    pageTitleField->setText(isKnown && !page->title.isEmpty() ? page->title : u"?"_s);
    showNeighbour(*previousPageButton, isKnown && page != pages.begin() ? &*(page - 1) : nullptr);
    showNeighbour(*nextPageButton, isKnown && page + 1 != pages.end() ? &*(page + 1) : nullptr);
    quickAccess_->showQuickAccessMenusForCategories(isKnown ? page->quickAccess : QStringList());
    contents_->setCurrentPath(path);
}

void HelpWindow::showNeighbour(QToolButton& button, const help::HelpPage* page) {
    button.setVisible(page != nullptr);
    if (page == nullptr)
        return;
    button.setToolTip(page->title);
    button.setAccessibleName(page->title);
    button.setProperty("path", page->path);
}

HelpWindow& showHelp(QWidget& window, platform::UserDefaults& defaults,
                     std::function<QString()> keyTables) {
    auto* help = window.findChild<HelpWindow*>();
    if (help == nullptr)
        help = new HelpWindow(defaults, std::move(keyTables), &window);
    help->openPage({}, {}, false);
    return *help;
}

}  // namespace ui
