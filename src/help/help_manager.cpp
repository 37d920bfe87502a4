#include "help/help_manager.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLocale>
#include <QStringDecoder>
#include <algorithm>

#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/text/comparison.h"

using namespace Qt::Literals::StringLiterals;

// The pages lie in a static library, whose resources nobody else would pull in. The macro works
// only outside any namespace.
static void initializeHelpBook() {
    Q_INIT_RESOURCE(help_book);
}

namespace help {

namespace {

constexpr qint64 longestPage = 1 << 20;
constexpr int mostPages = 1000;
const QString bookFolder = u"Help"_s;

QString pageText(const QUrl& url) {
    QFile file(url.scheme() == "qrc"_L1 ? u':' + url.path() : url.toLocalFile());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.read(longestPage);
    QStringDecoder decoder = QStringDecoder::decoderForHtml(bytes);
    return decoder.isValid() ? decoder.decode(bytes) : QString::fromUtf8(bytes);
}

QUrl urlOf(const QString& path) {
    return path.startsWith(u':') ? QUrl(u"qrc"_s + path) : QUrl::fromLocalFile(path);
}

bool isBehind(const HelpAnchor& a, const HelpAnchor& b) {
    const int order = platform::compareStringsNaturally(a.sortString, b.sortString);
    if (order != 0)
        return order < 0;
    if (a.name.size() != b.name.size())
        return a.name.size() < b.name.size();
    return platform::compareStringsNaturally(a.name, b.name) < 0;
}

/// "de-AT" also means "de".
QStringList searchList(const QStringList& languages) {
    QStringList names;
    for (const QString& tag : languages) {
        for (const QString& language : {tag, tag.section(u'-', 0, 0)})
            names << language + u".lproj"_s
                  << QLocale::languageToString(QLocale(language).language()) + u".lproj"_s;
    }
    names << u"en.lproj"_s << u"English.lproj"_s << QString();
    names.removeDuplicates();
    return names;
}

}  // namespace

QString localizedPathToDirectory(const QString& directory, const QString& outer,
                                 const QStringList& languages) {
    if (directory.isEmpty() || outer.isEmpty() || !QFileInfo(outer).isDir())
        return {};
    for (const QString& name : searchList(languages)) {
        const QString path = QDir::cleanPath(outer + u'/' + name + u'/' + directory);
        if (QFileInfo(path).isDir())
            return path;
    }
    return {};
}

DQHelpManager::DQHelpManager(QString userFolder, QStringList languages)
    : userFolder_(std::move(userFolder)), languages_(std::move(languages)) {
    initializeHelpBook();
}

QString DQHelpManager::windowTitle() {
    return links::filledFormat(links::localized("%@ Help"), {u"Orlop"_s});
}

QString DQHelpManager::foundFolder() const {
    const QString own = localizedPathToDirectory(bookFolder, userFolder_ + u"/Help"_s, languages_);
    if (!own.isEmpty())
        return QFileInfo(own).canonicalFilePath();
    const QFileInfo plain(userFolder_ + u'/' + bookFolder);
    if (plain.isDir())
        return plain.canonicalFilePath();
    return localizedPathToDirectory(bookFolder, u":/help"_s, languages_);
}

const QString& DQHelpManager::folder() {
    if (!folder_)
        folder_ = foundFolder();
    return *folder_;
}

const QMap<QString, QUrl>& DQHelpManager::pageURLsByRelativePath() {
    if (!_pageURLsByRelativePath.isEmpty() || folder().isEmpty())
        return _pageURLsByRelativePath;
    const QString base = urlOf(folder()).toString(QUrl::FullyEncoded) + u'/';
    QDirIterator files(folder(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext() && _pageURLsByRelativePath.size() < mostPages) {
        const QUrl url = urlOf(files.next());
        const QString address = url.toString(QUrl::FullyEncoded);
        if (address.endsWith(".html"_L1) && address.startsWith(base))
            _pageURLsByRelativePath.insert(address.sliced(base.size()), url);
    }
    return _pageURLsByRelativePath;
}

const std::vector<HelpPage>& DQHelpManager::pageRepresentations() {
    if (_pageRepresentations.empty())
        readPages();
    return _pageRepresentations;
}

void DQHelpManager::readPages() {
    const QMap<QString, QUrl>& urls = pageURLsByRelativePath();
    for (auto page = urls.begin(); page != urls.end(); ++page)
        _pageRepresentations.push_back(parsedHelpPage(page.key(), pageText(page.value())));
    std::stable_sort(_pageRepresentations.begin(), _pageRepresentations.end(),
                     [](const HelpPage& a, const HelpPage& b) {
                         return platform::compareStringsNaturally(a.index, b.index) < 0;
                     });
    for (const HelpPage& page : _pageRepresentations) {
        Folded folded{platform::folded(page.text), {}};
        for (const QString& word : page.words)
            folded.words.append(platform::folded(word));
        folded_.push_back(std::move(folded));
    }
}

QString DQHelpManager::contentOf(const QUrl& url) {
    return relativePathOf(url).isEmpty() ? QString() : pageText(url);
}

const HelpPage* DQHelpManager::pageAt(const QString& path) {
    const auto& pages = pageRepresentations();
    const auto found = std::find_if(pages.begin(), pages.end(),
                                    [&](const HelpPage& page) { return page.path == path; });
    return found == pages.end() ? nullptr : &*found;
}

QString DQHelpManager::relativePathOf(const QUrl& url) {
    return pageURLsByRelativePath().key(url.adjusted(QUrl::RemoveFragment));
}

QList<HelpAnchor> DQHelpManager::anchorsOfCategory(const QString& category) {
    QList<HelpAnchor> anchors;
    for (const HelpPage& page : pageRepresentations()) {
        for (const HelpAnchor& anchor : page.anchors) {
            if (anchor.category == category)
                anchors.append(anchor);
        }
    }
    std::stable_sort(anchors.begin(), anchors.end(), isBehind);
    const auto last =
        std::unique(anchors.begin(), anchors.end(),
                    [](const HelpAnchor& a, const HelpAnchor& b) { return a.name == b.name; });
    anchors.erase(last, anchors.end());
    return anchors;
}

bool DQHelpManager::matches(std::size_t page, const QStringList& foldedWords) const {
    const QStringList& words = folded_[page].words;
    return std::all_of(foldedWords.begin(), foldedWords.end(), [&](const QString& wanted) {
        return std::any_of(words.begin(), words.end(),
                           [&](const QString& word) { return word.contains(wanted); });
    });
}

std::vector<HelpItem> DQHelpManager::itemsWithSearchString(const QString& text, int limit,
                                                           const QString& abortPath) {
    const QStringList words = wordsFromString(text);
    QStringList foldedWords;
    for (const QString& word : words)
        foldedWords.append(platform::folded(word));
    std::vector<HelpItem> items;
    if (words.isEmpty())
        return items;
    const auto& pages = pageRepresentations();
    for (std::size_t at = 0; at < pages.size(); ++at) {
        if (!matches(at, foldedWords))
            continue;
        if (pages[at].path == abortPath && folded_[at].text.contains(platform::folded(text)))
            return {};
        items.push_back({pages[at].title, pages[at].path, words});
        if (limit > 0 && items.size() == static_cast<std::size_t>(limit))
            break;
    }
    return items;
}

QStringList DQHelpManager::searchSuggestionsForQuery(const QString& query,
                                                     const QString& currentPath) {
    QStringList titles;
    for (const HelpItem& item : itemsWithSearchString(query, 0, currentPath))
        titles.append(item.title);
    return titles;
}

}  // namespace help
