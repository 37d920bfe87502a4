#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace help {

/// A place in a page that can be reached by itself: `<a name="[keys]Option_Key">`.
struct HelpAnchor {
    QString path;        ///< Of the page, relative to the book's folder.
    QString fragment;    ///< The name as it stands in the page.
    QString name;        ///< What people read.
    QString sortString;  ///< The name without punctuation.
    QString category;    ///< Empty: none.
};

/// What is known of a page. A page that cannot be read has no words, and nothing else either.
struct HelpPage {
    QString index;  ///< By which pages are sorted; a line follows in menus if it ends with "_".
    QString path;   ///< Relative to the book's folder.
    QString title;
    QString text;       ///< Without tags.
    QStringList words;  ///< Of `text`, in lower case, each once.
    QList<HelpAnchor> anchors;
    QStringList quickAccess;  ///< Categories of anchors that are offered over the page.
};

/// Words of two characters and more, in lower case, each once, in the order of first appearance.
/// Blanks, punctuation and digits separate them, hyphens do not.
[[nodiscard]] QStringList wordsFromString(const QString& text);

/// The part behind the first `prefix` and before the first `suffix` after it, whatever their case.
/// Null: one of them is missing.
[[nodiscard]] QString contentBetween(const QString& text, const QString& prefix,
                                     const QString& suffix);

/// Nothing: the name is empty, or ends with "_noindex".
[[nodiscard]] std::optional<HelpAnchor> anchorNamed(const QString& fragment, const QString& path);

/// Reads the page and its markers, which are comments:
/// `<!--com.tarnworks.help.index[10]-->` and `<!--com.tarnworks.help.quickaccess[keys|tasks]-->`.
[[nodiscard]] HelpPage parsedHelpPage(const QString& path, const QString& html);

}  // namespace help
