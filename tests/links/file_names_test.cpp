#include "links/names/file_names.h"

#include <gtest/gtest.h>

#include "links/names/content_disposition.h"
#include "links/names/safe_file_name.h"
#include "links/paths/path_components.h"
#include "links/settings.h"
#include "platform/net/url.h"
#include "support/printers.h"

using namespace Qt::Literals::StringLiterals;

namespace {

struct Case {
    QString given;
    QString expected;
};

TEST(FileNames, FilenameOfURL) {
    const Case cases[] = {
        {u"http://host/a+b%20c.zip"_s, u"a b c.zip"_s},
        {u"http://host/dir/x.zip?y=1#z"_s, u"x.zip"_s},
        {u"http://host/dir/"_s, u"dir"_s},
        {u"http://host/"_s, u"host"_s},
        {u"http://www.a.example/"_s, u"a-example"_s},
        {u"http://cdn.www.a.example/"_s, u"a-example"_s},
        {u"http://host/%E4.zip"_s, u"ä.zip"_s},
        {u"http://host/100%25"_s, u"100%"_s},
        {u"http://host/download.php%3Fid=7"_s, u"download.php"_s},
        {u"http://host/get%3Ffile=a.zip"_s, u"get?file=a.zip"_s},
        {u"mailto:"_s, u"-"_s},
    };
    for (const Case& c : cases) {
        const auto url = platform::Url::parse(c.given);
        ASSERT_TRUE(url) << qPrintable(c.given);
        EXPECT_EQ(links::filename(*url), c.expected) << qPrintable(c.given);
    }
}

TEST(FileNames, PlusSignsStayIfTheSettingSaysSo) {
    auto& defaults = platform::standardDefaults();
    const auto nameOf = [&](const QString& url) {
        return links::filename(*platform::Url::parse(url), links::plusSignsInNames(defaults));
    };
    const QString package = u"http://host/libstdc++6_12.deb"_s;
    EXPECT_EQ(nameOf(package), u"libstdc  6_12.deb"_s);
    defaults.set(links::settings::plusSignsStandForBlanks, false);
    EXPECT_EQ(nameOf(package), u"libstdc++6_12.deb"_s);
    defaults.removeObject(links::settings::plusSignsStandForBlanks.name());
}

TEST(FileNames, FilenameByPattern) {
    struct PatternCase {
        QString pattern;
        QString title;
        QString expected;
    };
    const PatternCase cases[] = {
        {u"title: (.*) - Site"_s, u"Foo - Site"_s, u"Foo"_s},
        {u" TITLE :(.*)"_s, u"a/b"_s, u"a|b"_s},
        {u"title:q=(\\w+)"_s, {}, u"One"_s},
        {u"q=(\\w+)&n=(\\d+)|ignored(x)"_s, {}, u"One2"_s},
        {u"\\d"_s, {}, u"23"_s},
        {u"title:"_s, u"Foo"_s, u"page.html"_s},
        {u"nowhere"_s, u"Foo"_s, u"page.html"_s},
        {u"(unclosed"_s, u"Foo"_s, u"page.html"_s},
        {u"q=()"_s, u"Foo"_s, u"page.html"_s},
    };
    const auto url = platform::Url::parse(u"http://host/page.html?q=One&n=2%3"_s)
                         .value_or(*platform::Url::parse(u"http://host/page.html?q=One&n=2&m=3"_s));
    for (const PatternCase& c : cases) {
        EXPECT_EQ(links::filenameWithPreservedNamePattern(url, c.pattern, c.title), c.expected)
            << qPrintable(c.pattern);
    }
}

TEST(FileNames, CleanFilename) {
    const Case cases[] = {
        {u".hidden."_s, u"_hidden_"_s},
        {u"a:b*c"_s, u"a_b_c"_s},
        {u" a\tb\r\n "_s, u"a b"_s},
        {u"a/b"_s, u"a|b"_s},
        {u"a\nb\rc"_s, u"abc"_s},
        {u"..."_s, u"_._"_s},
        {u"."_s, u"_"_s},
        {u"?\"<>|\\"_s, u"?\"<>|\\"_s},
        {u" "_s, u""_s},
    };
    for (const Case& c : cases)
        EXPECT_EQ(links::cleanFilename(c.given), c.expected) << qPrintable(c.given);
}

TEST(FileNames, CleanRelativePath) {
    const Case cases[] = {{u"//a///b/"_s, u"a/b"_s},
                          {u"2024/01:02"_s, u"2024/01_02"_s},
                          {u"../x"_s, u"_./x"_s},
                          {u"///"_s, u""_s}};
    for (const Case& c : cases) {
        EXPECT_EQ(links::cleanPathByReplacingDashesWithString(c.given, std::nullopt), c.expected)
            << qPrintable(c.given);
    }
}

TEST(FileNames, SafeFileName) {
    const QString nul(QChar(u'\0'));
    const Case cases[] = {
        {u"-plain name.zip"_s, u"-plain name.zip"_s},
        {u""_s, u"-"_s},
        {u"."_s, u"_"_s},
        {u".."_s, u"__"_s},
        {u"../../etc/passwd"_s, u"_.|..|etc|passwd"_s},
        {u"/"_s, u"|"_s},
        {u"a"_s + nul + u"b\u0007\u0085\u2028.zip"_s, u"ab.zip"_s},
        {u"photo\u202Egpj.exe"_s, u"photogpj.exe"_s},
        {u"\u200E.hidden"_s, u"_hidden"_s},
        {u"\u2066\u200F "_s, u"-"_s},
        {u"a\tb"_s, u"a b"_s},
        {u"x.zip.orlop-xf-1"_s, u"x.zip_orlop-xf-1"_s},
        {u"x.ORLOP-RF-2.zip"_s, u"x_orlop-rf-2.zip"_s},
        {u"Archive.orlopinfo"_s, u"Archive_orlopinfo"_s},
        {u"_DS_Store"_s, u"-DS_Store"_s},
        {QString(245, u'a') + u".orlopinfo"_s + QString(40, u'b'),
         QString(245, u'a') + u"_orlopinfo"_s},
        {u"x\xD800y"_s, u"x?y"_s},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(links::safeFileName(c.given), c.expected) << qPrintable(c.given);
        EXPECT_EQ(links::safeFileName(c.expected), c.expected) << qPrintable(c.given);
    }
}

TEST(FileNames, LongNamesAreCutAtCharacterBoundaries) {
    struct LengthCase {
        QString name;
        qsizetype reserved;
        QString ending;
    };
    const QString emoji = u"\U0001F4BE"_s;
    const LengthCase cases[] = {
        {QString(300, u'a') + u".zip"_s, 0, u".zip"_s},
        {QString(300, u'ä') + u".zip"_s, 48, u".zip"_s},
        {emoji.repeated(100) + u".tar.gz"_s, 7, u".gz"_s},
        {emoji.repeated(100), 0, emoji},
        {u"a."_s + QString(300, u'x'), 0, u"x"_s},
        {QString(250, u'a') + u"    . .zip"_s, 0, u"a.zip"_s},
    };
    for (const LengthCase& c : cases) {
        const QString safe = links::safeFileName(c.name, c.reserved);
        EXPECT_LE(safe.toUtf8().size(), links::maximumFileNameBytes - c.reserved);
        EXPECT_GT(safe.toUtf8().size(), links::maximumFileNameBytes - c.reserved - 8);
        EXPECT_TRUE(safe.endsWith(c.ending)) << qPrintable(safe);
        EXPECT_TRUE(safe.isValidUtf16());
        EXPECT_EQ(links::safeFileName(safe, c.reserved), safe);
    }
    EXPECT_EQ(links::fittedFileName(QString(300, u'.')).size(), 255);
}

TEST(FileNames, PathComponents) {
    struct PathCase {
        QString path;
        QString last;
        QString folder;
        QString extension;
        QString withoutExtension;
    };
    const PathCase cases[] = {
        {u"/a/b.c.d"_s, u"b.c.d"_s, u"/a"_s, u"d"_s, u"/a/b.c"_s},
        {u"/a.x/b/"_s, u"b"_s, u"/a.x"_s, u""_s, u"/a.x/b"_s},
        {u"/a"_s, u"a"_s, u"/"_s, u""_s, u"/a"_s},
        {u"/"_s, u"/"_s, u"/"_s, u""_s, u"/"_s},
        {u""_s, u""_s, u""_s, u""_s, u""_s},
        {u"a.zip"_s, u"a.zip"_s, u""_s, u"zip"_s, u"a"_s},
        {u".profile"_s, u".profile"_s, u""_s, u""_s, u".profile"_s},
        {u"a."_s, u"a."_s, u""_s, u""_s, u"a."_s},
        {u"/a//b"_s, u"b"_s, u"/a"_s, u""_s, u"/a//b"_s},
    };
    for (const PathCase& c : cases) {
        SCOPED_TRACE(qPrintable(c.path));
        EXPECT_EQ(links::lastPathComponent(c.path), c.last);
        EXPECT_EQ(links::stringByDeletingLastPathComponent(c.path), c.folder);
        EXPECT_EQ(links::pathExtension(c.path), c.extension);
        EXPECT_EQ(links::stringByDeletingPathExtension(c.path), c.withoutExtension);
    }
    EXPECT_EQ(links::stringByAppendingPathComponent(u"/"_s, u"/a/"_s), u"/a");
    EXPECT_EQ(links::stringByAppendingPathComponent(u"/a/"_s, u"b"_s), u"/a/b");
    EXPECT_EQ(links::stringByAppendingPathComponent(u""_s, u"b"_s), u"b");
    EXPECT_EQ(links::stringByAppendingPathComponent(u"/a"_s, u""_s), u"/a");
    EXPECT_EQ(links::stringByAppendingPathExtension(u"/a/"_s, u"b"_s), u"/a.b");
    EXPECT_EQ(links::stringByAppendingPathExtension(u"/"_s, u"b"_s), u"/");
}

TEST(ContentDisposition, Names) {
    const Case cases[] = {
        // Extended.
        {u"attachment; filename*=UTF-8''a%20b.zip"_s, u"a b.zip"_s},
        {u"attachment; filename=\"plain.zip\"; filename* = utf-8'en' %C3%A4.zip ;x"_s, u"ä.zip"_s},
        {u"attachment; filename*=utf-8''%2Fetc%2Fx.zip"_s, u"x.zip"_s},
        {u"attachment; filename*=UTF-8''%E4.zip"_s, u"ä.zip"_s},
        {u"attachment; filename*=UTF-8''50%.zip"_s, u"50%.zip"_s},
        {u"attachment; filename*=iso-8859-1''x.zip"_s, u""_s},
        {u"attachment; filename*=iso-8859-1''%E4.zip; filename=\"a.zip\""_s, u"a.zip"_s},
        {u"attachment; filename*=utf-8'' ; filename=\"a.zip\""_s, u"a.zip"_s},
        // Quoted.
        {u"attachment; FileName = \" a;b.zip \"; size=3"_s, u"a;b.zip"_s},
        {uR"(attachment; filename="say \"hi\".zip"; x="y")"_s, uR"(say \"hi\".zip)"_s},
        {uR"(attachment; filename="C:\dir\x.zip")"_s, uR"(C:\dir\x.zip)"_s},
        {uR"(attachment; filename="ends\\")"_s, uR"(ends\\)"_s},
        {u"attachment; filename=\"../../x.zip\""_s, u"x.zip"_s},
        // Token.
        {u"attachment; filename=x.zip"_s, u"x.zip"_s},
        {u"attachment; filename = 'x y.zip' "_s, u"x y.zip"_s},
        {u"attachment; filename=x.zip; size=3"_s, u"x.zip; size=3"_s},
        {u"attachment; filename=a/b/x.zip"_s, u"x.zip"_s},
        {u"attachment; filename=\"unclosed.zip"_s, u"\"unclosed.zip"_s},
        {u"attachment; filename=\"\""_s, u""_s},
        {u"attachment; filename=''"_s, u""_s},
        {u"attachment; filename=\""_s, u"\""_s},
        {u"attachment; filename="_s, u""_s},
        {u"attachment; filename"_s, u""_s},
        {u"inline"_s, u""_s},
        {u""_s, u""_s},
    };
    for (const Case& c : cases)
        EXPECT_EQ(links::filenameFromContentDisposition(c.given), c.expected)
            << qPrintable(c.given);
}

TEST(ContentDisposition, HugeFieldsEnd) {
    const QString slashes = u"filename=\""_s + QString(300'000, u'\\');
    EXPECT_EQ(links::filenameFromContentDisposition(slashes).size(), 16384 - 9);
    const QString names = u"filename=\\\""_s.repeated(30'000);
    EXPECT_FALSE(links::filenameFromContentDisposition(names).isEmpty());
}

}  // namespace
