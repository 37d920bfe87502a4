#include "app/terminal/opened_items.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

namespace {

using namespace Qt::Literals::StringLiterals;
using app::terminal::openedItems;

TEST(TerminalOpenedItems, TellsFilesFromAddressesFromNonsense) {
    const QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"part.orlop"_s));
    const QString path = folder.filePath(u"part.orlop"_s);
    const auto opened =
        openedItems({u"http://a.example/x"_s, QDir::current().relativeFilePath(path), u"nonsense"_s,
                     u"HTTPS://b.example/"_s, u"ftp://c/"_s, u"http://"_s, u"https:///x"_s, u""_s},
                    {}, false);
    EXPECT_EQ(opened.items, (QStringList{u"http://a.example/x"_s, path, u"HTTPS://b.example/"_s}));
    EXPECT_EQ(opened.refused,
              (QStringList{u"nonsense"_s, u"ftp://c/"_s, u"http://"_s, u"https:///x"_s, u""_s}));
}

TEST(TerminalOpenedItems, KnowsTheAddressesThatAWordStandsFor) {
    const auto opened =
        openedItems({u"http://a.example/{1-3}"_s, u"http://a.example/big/{1-999999}"_s}, {}, false);
    EXPECT_EQ(opened.items.size(), 2);
    ASSERT_GE(opened.addresses.size(), 3);
    EXPECT_EQ(
        opened.addresses.mid(0, 3),
        (QStringList{u"http://a.example/1"_s, u"http://a.example/2"_s, u"http://a.example/3"_s}));
    EXPECT_LT(opened.addresses.size(), 20'000);
}

TEST(TerminalOpenedItems, ReadsAListInPlaceOfTheHyphen) {
    const auto opened = openedItems(
        {u"http://a/"_s, u"-"_s, u"http://d/"_s},
        u"# my files\r\n  http://b/ \n\n/etc/passwd\nhttp://c/{x,y}\nno address"_s, false);
    EXPECT_EQ(opened.items,
              (QStringList{u"http://a/"_s, u"http://b/"_s, u"http://c/{x,y}"_s, u"http://d/"_s}));
    EXPECT_EQ(opened.refusedLines, (QStringList{u"/etc/passwd"_s, u"no address"_s}));
    EXPECT_TRUE(opened.refused.isEmpty());
}

}  // namespace
