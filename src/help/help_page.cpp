#include "help/help_page.h"

#include <QSet>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace help {

namespace {

bool separatesWords(QChar unit) {
    return unit.isSpace() || unit.isDigit() || (unit.isPunct() && unit != u'-') ||
           unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator;
}

QString withoutComments(const QString& html) {
    QString rest;
    qsizetype at = 0;
    for (;;) {
        const qsizetype begin = html.indexOf("<!--"_L1, at);
        const qsizetype end = begin < 0 ? -1 : html.indexOf("-->"_L1, begin);
        rest += QStringView(html).sliced(at, (end < 0 ? html.size() : begin) - at);
        if (end < 0)
            return rest;
        at = end + 3;
    }
}

/// Every stretch between tags with a blank ahead of it.
QString plainText(const QString& html) {
    QString text;
    qsizetype at = 0;
    while (at < html.size()) {
        const qsizetype tag = html.indexOf(u'<', at);
        const qsizetype end = tag < 0 ? html.size() : tag;
        if (end > at)
            text += u' ' + html.sliced(at, end - at);
        const qsizetype behind = tag < 0 ? -1 : html.indexOf(u'>', tag);
        if (behind < 0)
            break;
        at = behind + 1;
    }
    return text;
}

/// The first letter of each word upper, the others lower.
QString capitalized(QString text) {
    bool isInWord = false;
    for (QChar& unit : text) {
        unit = isInWord ? unit.toLower() : unit.toUpper();
        isInWord = unit.isLetterOrNumber() || unit == u'\'' || unit == u'\u2019' || unit.isMark();
    }
    return text;
}

QString displayName(QString name) {
    static const QString lowercaseMark = u"==Lowercase"_s;
    name.replace(u'_', u' ').replace("=L="_L1, lowercaseMark);
    return capitalized(name.trimmed()).remove(lowercaseMark).remove("=U="_L1);
}

QString sortStringOf(const QString& name) {
    QString sort;
    for (const QChar unit : name)
        sort += unit.isPunct() ? QChar(u' ') : unit;
    return sort.simplified();
}

QList<HelpAnchor> anchorsIn(const QString& body, const QString& path) {
    static const QString opening = u"<a name=\""_s;
    QList<HelpAnchor> anchors;
    qsizetype at = body.indexOf(opening, 0, Qt::CaseInsensitive);
    while (at >= 0) {
        const qsizetype begin = at + opening.size();
        const qsizetype end = body.indexOf(u'"', begin);
        if (end < 0)
            break;
        if (auto anchor = anchorNamed(body.sliced(begin, end - begin), path))
            anchors.append(std::move(*anchor));
        at = body.indexOf(opening, end, Qt::CaseInsensitive);
    }
    return anchors;
}

}  // namespace

QStringList wordsFromString(const QString& text) {
    QStringList words;
    QSet<QString> known;
    qsizetype begin = 0;
    for (qsizetype at = 0; at <= text.size(); ++at) {
        if (at < text.size() && !separatesWords(text[at]))
            continue;
        const QString word = text.sliced(begin, at - begin).toLower();
        begin = at + 1;
        if (word.size() < 2 || known.contains(word))
            continue;
        known.insert(word);
        words.append(word);
    }
    return words;
}

QString contentBetween(const QString& text, const QString& prefix, const QString& suffix) {
    const qsizetype found = prefix.isEmpty() ? 0 : text.indexOf(prefix, 0, Qt::CaseInsensitive);
    if (found < 0)
        return {};
    const qsizetype begin = found + prefix.size();
    const qsizetype end =
        suffix.isEmpty() ? text.size() : text.indexOf(suffix, begin, Qt::CaseInsensitive);
    return end < 0 ? QString() : text.sliced(begin, end - begin);
}

std::optional<HelpAnchor> anchorNamed(const QString& fragment, const QString& path) {
    if (fragment.isEmpty() || fragment.endsWith("_noindex"_L1, Qt::CaseInsensitive))
        return std::nullopt;
    const qsizetype end = fragment.indexOf(u']');
    const QString category = fragment.left(std::max<qsizetype>(end, 0));
    HelpAnchor anchor;
    anchor.path = path;
    anchor.fragment = fragment;
    anchor.category = category.sliced(category.indexOf(u'[') + 1);
    anchor.name = displayName(fragment.sliced(end + 1));
    anchor.sortString = sortStringOf(anchor.name);
    return anchor;
}

HelpPage parsedHelpPage(const QString& path, const QString& html) {
    HelpPage page;
    page.path = path;
    const QString body = withoutComments(contentBetween(html, u"<body>"_s, {}));
    page.text = plainText(body);
    page.words = wordsFromString(page.text);
    if (!page.words.isEmpty()) {
        page.title = contentBetween(html, u"<title>"_s, u"</title>"_s).trimmed();
        page.index = contentBetween(html, u"<!--com.tarnworks.help.index["_s, u"]-->"_s);
        page.quickAccess = contentBetween(html, u"<!--com.tarnworks.help.quickaccess["_s, u"]-->"_s)
                               .split(u'|', Qt::SkipEmptyParts);
        page.anchors = anchorsIn(body, path);
    }
    if (page.title.isEmpty())
        page.title = path;
    if (page.index.isEmpty())
        page.index = u"%1.%2"_s.arg(std::numeric_limits<qint64>::max()).arg(path);
    return page;
}

}  // namespace help
