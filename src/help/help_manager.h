#pragma once

#include <QMap>
#include <QUrl>
#include <optional>
#include <vector>

#include "help/help_page.h"

namespace help {

/// A page that a search has found.
struct HelpItem {
    QString title;
    QString path;
    QStringList words;  ///< That were looked for, to be shown in the page.
};

/// The manual: a folder of plain HTML pages, from whose markers the order, the contents, the quick
/// access and the search are made. Everything is read when it is first asked for; nothing of it is
/// kept between runs. Main thread.
class DQHelpManager {
public:
    /// `languages` as the user prefers them ("de-AT", "de", "en"). A book in `userFolder`, the
    /// program's folder of the user, goes before the program's own.
    DQHelpManager(QString userFolder, QStringList languages);

    /// "Orlop Help"
    [[nodiscard]] static QString windowTitle();
    /// The folder of the pages, or empty if there is none.
    [[nodiscard]] const QString& folder();
    [[nodiscard]] const QMap<QString, QUrl>& pageURLsByRelativePath();
    [[nodiscard]] const std::vector<HelpPage>& pageRepresentations();
    /// As it stands in its file, at most 1 MiB of it. Null: it is no page of the book.
    [[nodiscard]] QString contentOf(const QUrl& url);
    /// Null: there is no such page.
    [[nodiscard]] const HelpPage* pageAt(const QString& path);
    /// Empty: not one of the pages.
    [[nodiscard]] QString relativePathOf(const QUrl& url);
    /// Sorted for a menu, without neighbours of one name.
    [[nodiscard]] QList<HelpAnchor> anchorsOfCategory(const QString& category);

    /// The pages that hold all words of the text, as parts of their words. Nothing at all if the
    /// page that the reader is on holds the text as it stands. `limit` 0: all.
    [[nodiscard]] std::vector<HelpItem> itemsWithSearchString(const QString& text, int limit,
                                                              const QString& abortPath = {});
    /// The titles of these.
    [[nodiscard]] QStringList searchSuggestionsForQuery(const QString& query,
                                                        const QString& currentPath);

private:
    struct Folded {
        QString text;
        QStringList words;
    };

    [[nodiscard]] QString foundFolder() const;
    [[nodiscard]] bool matches(std::size_t page, const QStringList& foldedWords) const;
    void readPages();

    const QString userFolder_;
    const QStringList languages_;
    std::optional<QString> folder_;
    QMap<QString, QUrl> _pageURLsByRelativePath;
    std::vector<HelpPage> _pageRepresentations;
    std::vector<Folded> folded_;  ///< For searching, page by page.
};

/// The folder `directory` of the best language inside of `outer`, whose folders are named after
/// languages, "de.lproj" or "German.lproj". Empty: none.
[[nodiscard]] QString localizedPathToDirectory(const QString& directory, const QString& outer,
                                               const QStringList& languages);

}  // namespace help
