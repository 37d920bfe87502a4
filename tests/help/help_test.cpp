#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "help/default_link.h"
#include "help/help_manager.h"
#include "help/help_page.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using help::parsedHelpPage;

QString page(const QString& body, const QString& markers = {}) {
    return u"<html><head><title> A Page </title>%1</head><BODY>%2</body></html>"_s.arg(markers,
                                                                                       body);
}

QStringList names(const help::HelpPage& page) {
    QStringList names;
    for (const help::HelpAnchor& anchor : page.anchors)
        names.append(anchor.category + u'/' + anchor.name);
    return names;
}

TEST(HelpPage, WordsAreWhatStandsBetweenBlanksPunctuationAndDigits) {
    const struct {
        QString text;
        QStringList words;
    } cases[] = {
        {u"Re-read the Re-Read, please."_s, {u"re-read"_s, u"the"_s, u"please"_s}},
        {u"a 7 42 x1y"_s, {}},
        {u"abc1def"_s, {u"abc"_s, u"def"_s}},
        {u"\u00c4rger\u2028\u00e4rger"_s, {u"\u00e4rger"_s}},
    };
    for (const auto& [text, words] : cases)
        EXPECT_EQ(help::wordsFromString(text), words) << text.toStdString();
}

TEST(HelpPage, ReadsTextMarkersAndAnchors) {
    const help::HelpPage read = parsedHelpPage(
        u"a.html"_s,
        page(
            u"<p>One<b>two</b></p><!-- <a name=\"hidden\">no</a> three -->"
            "<a name=\"[keys]Option_=L=and_Alt=U=gr\"></a><A NAME=\"plain_name_\">x</a>"
            "<a name=\"Skipped_NOINDEX\"></a><a name=\"\"></a><a name=\"broken"_s,
            u"<!--com.tarnworks.help.index[12_]--><!--COM.tarnworks.help.quickaccess[keys|x]-->"_s));
    EXPECT_EQ(read.title, u"A Page"_s);
    EXPECT_EQ(read.index, u"12_"_s);
    EXPECT_EQ(read.quickAccess, QStringList({u"keys"_s, u"x"_s}));
    EXPECT_EQ(read.text.simplified(), u"One two x"_s);
    EXPECT_EQ(names(read), QStringList({u"keys/Option and AltGr"_s, u"/Plain Name"_s}));
    EXPECT_EQ(read.anchors[1].fragment, u"plain_name_"_s);
}

TEST(HelpPage, WithoutABodyOrWordsIsEmptyAndLast) {
    for (const QString& html : {QString(), u"<html><body class='x'>text"_s, page(u"1 2 3"_s)}) {
        const help::HelpPage read = parsedHelpPage(u"dir/b.html"_s, html);
        EXPECT_EQ(read.words, QStringList());
        EXPECT_EQ(read.title, u"dir/b.html"_s);
        EXPECT_EQ(read.index, u"9223372036854775807.dir/b.html"_s);
    }
}

/// Hostile pages: nothing hangs, nothing is read beyond its end.
TEST(HelpPage, BearsWhateverStandsThere) {
    const QString deep = u"<div>"_s.repeated(100'000);
    EXPECT_EQ(parsedHelpPage(u"x"_s, page(deep + u"deep"_s)).words, QStringList{u"deep"_s});
    for (const QString& end :
         {u"<"_s, u"<!--"_s, u"<a name=\""_s, u"<!--com.tarnworks.help.index["_s})
        EXPECT_EQ(parsedHelpPage(u"x"_s, u"<body>word "_s + end).words, QStringList{u"word"_s});
}

class HelpBookTest : public testing::Test {
protected:
    void write(const QString& name, const QString& html) const {
        const QString path = folder.filePath(u"Help/de.lproj/Help/"_s + name);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(html.toUtf8());
    }
    [[nodiscard]] static QString at(int index, const QString& body) {
        return page(body, u"<!--com.tarnworks.help.index[%1]-->"_s.arg(index));
    }
    static QStringList paths(const std::vector<help::HelpItem>& items) {
        QStringList paths;
        for (const help::HelpItem& item : items)
            paths.append(item.path);
        return paths;
    }

    const QTemporaryDir folder;
    help::DQHelpManager manager{folder.path(), {u"de-AT"_s}};
};

TEST_F(HelpBookTest, SortsItsPagesByNumber) {
    write(u"ten.html"_s, at(10, u"word"_s));
    write(u"nine.html"_s, at(9, u"word"_s));
    write(u"none.html"_s, page(u"word"_s));
    write(u"sub dir/two.html"_s, at(2, u"word"_s));
    write(u"other.txt"_s, u"no page"_s);
    QStringList order;
    for (const help::HelpPage& page : manager.pageRepresentations())
        order.append(page.path);
    EXPECT_EQ(order, QStringList(
                         {u"sub%20dir/two.html"_s, u"nine.html"_s, u"ten.html"_s, u"none.html"_s}));
    const QUrl url = manager.pageURLsByRelativePath()[u"nine.html"_s];
    EXPECT_EQ(manager.relativePathOf(QUrl(url.toString() + u"#there"_s)), u"nine.html"_s);
    EXPECT_TRUE(manager.contentOf(url).contains(u"A Page"_s));
    EXPECT_TRUE(manager.contentOf(QUrl::fromLocalFile(u"/etc/passwd"_s)).isNull());
}

TEST_F(HelpBookTest, FindsPagesByPartsOfTheirWords) {
    write(u"a.html"_s, at(1, u"The gr\u00f6\u00dfte caf\u00e9, wide open"_s));
    write(u"b.html"_s, at(2, u"An opener of caf\u00e9s"_s));
    const struct {
        QString query, current;
        QStringList found;
    } cases[] = {
        {u"open"_s, {}, {u"a.html"_s, u"b.html"_s}},
        {u"CAFES"_s, {}, {u"b.html"_s}},
        {u"afe PENE"_s, {}, {u"b.html"_s}},
        {u"groesste"_s, {}, {}},
        {u"gr\u00f6sste"_s, {}, {u"a.html"_s}},
        {u"2026"_s, {}, {}},
        {u""_s, {}, {}},
        {u"wide open"_s, u"a.html"_s, {}},
        {u"open wide"_s, u"a.html"_s, {u"a.html"_s}},
    };
    for (const auto& [query, current, found] : cases)
        EXPECT_EQ(paths(manager.itemsWithSearchString(query, 0, current)), found)
            << query.toStdString();
    EXPECT_EQ(manager.itemsWithSearchString(u"open"_s, 1).size(), 1U);
}

TEST_F(HelpBookTest, GathersTheAnchorsOfACategory) {
    write(u"a.html"_s, at(1, u"word <a name=\"[t]Step_10\"></a><a name=\"[t]Step_9\"></a>"_s));
    write(u"b.html"_s, at(2, u"word <a name=\"[t]step_9\"></a><a name=\"[u]Else\"></a>"_s));
    QStringList names;
    for (const help::HelpAnchor& anchor : manager.anchorsOfCategory(u"t"_s))
        names.append(anchor.name + u'@' + anchor.path);
    EXPECT_EQ(names, QStringList({u"Step 9@a.html"_s, u"Step 10@a.html"_s}));
}

TEST(DefaultLink, SetsRemovesAndComesBack) {
    const QTemporaryDir folder;
    platform::UserDefaults defaults(folder.path(), u"test"_s);
    const struct {
        const char16_t* link;
        QVariant value;
    } cases[] = {
        {u"yes", true},
        {u"FALSE", false},
        {u"integer:-5", qint64{-5}},
        {u"double:0.5", 0.5},
        {u"integer:", u"integer:"_s},
        {u"a%20%C3%A4", u"a \u00e4"_s},
    };
    for (const auto& [link, value] : cases) {
        const auto parsed = help::parsedDefaultLink(u"x-tarnworks-help://default/Some%20Key#"_s +
                                                    QString::fromUtf16(link));
        ASSERT_TRUE(parsed);
        const help::DefaultChange change = help::followed(*parsed, defaults);
        EXPECT_EQ(defaults.objectForKey(u"Some Key"_s), value);
        EXPECT_EQ(change.message(), u"User default updated"_s);
        EXPECT_EQ(change.revertTitle(), u"Revert to (No Value)"_s);
        const help::DefaultChange again = help::followed(*parsed, defaults);
        EXPECT_EQ(again.message(), u"That didn't do anything"_s);
        change.revert(defaults);
        EXPECT_FALSE(defaults.hasValueForKey(u"Some Key"_s));
    }
    defaults.setObject(u"Some Key"_s, true);
    const auto removal = help::parsedDefaultLink(u"x-tarnworks-help://default/Some%20Key#"_s);
    const help::DefaultChange removed = help::followed(*removal, defaults);
    EXPECT_FALSE(defaults.hasValueForKey(u"Some Key"_s));
    EXPECT_EQ(removed.informativeText(), u"Some Key is now set to (No Value)."_s);
    EXPECT_EQ(removed.revertTitle(), u"Revert to Yes"_s);
    removed.revert(defaults);
    EXPECT_EQ(defaults.objectForKey(u"Some Key"_s), QVariant(true));
    for (const QString& link :
         {u"x-tarnworks-help://default/Key"_s, u"x-tarnworks-help://default/#1"_s,
          u"x-tarnworks-help://message/hello"_s, u"http://default/Key#1"_s})
        EXPECT_FALSE(help::parsedDefaultLink(link)) << link.toStdString();
}

}  // namespace
