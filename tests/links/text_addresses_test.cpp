#include "links/recognition/text_addresses.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <iostream>

#include "links/recognition/text_items.h"
#include "support/printers.h"

using namespace Qt::Literals::StringLiterals;

namespace {

struct Found {
    QStringList addresses;
    QStringList refused;
};

Found foundIn(const QStringList& texts) {
    Found found;
    links::TextAddresses addresses(texts, true);
    while (const auto finding = addresses.next()) {
        if (finding->address)
            found.addresses.append(finding->address->absoluteString());
        else
            found.refused.append(finding->refused);
    }
    return found;
}

/// One of the collection in tests/data/pastes.
struct Paste {
    QString place;
    QStringList lines;
    QStringList addresses;
    bool lacksScheme = false;
};

QString withoutEscapes(QString line) {
    line.replace(u"\\\\"_s, u"\x01"_s).replace(u"\\t"_s, u"\t"_s);
    for (qsizetype at = line.indexOf(u"\\u"_s); at >= 0; at = line.indexOf(u"\\u"_s, at + 1)) {
        const auto code = static_cast<char16_t>(line.mid(at + 2, 4).toUShort(nullptr, 16));
        line.replace(at, 6, QString(QChar(code)));
    }
    return line.replace(u'\x01', u'\\');
}

std::vector<Paste> collection() {
    std::vector<Paste> pastes;
    const QDir folder(QStringLiteral(ORLOP_TEST_DATA "/pastes"));
    for (const QFileInfo& info : folder.entryInfoList({u"*.txt"_s}, QDir::Files, QDir::Name)) {
        QFile file(info.filePath());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        bool isNew = true;
        int number = 0;
        for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n')) {
            ++number;
            if (line.isEmpty() || line.startsWith(u'#')) {
                isNew = true;
                continue;
            }
            if (std::exchange(isNew, false))
                pastes.push_back({u"%1:%2"_s.arg(info.fileName()).arg(number), {}, {}});
            if (line.startsWith(u'|'))
                pastes.back().lines.append(withoutEscapes(line.mid(2)));
            else if (line.startsWith(u'='))
                pastes.back().addresses.append(line.mid(2));
            else
                pastes.back().lacksScheme = true;
        }
    }
    return pastes;
}

/// What is in both, counting repeats.
qsizetype numberInBoth(const QStringList& a, QStringList b) {
    return std::count_if(a.begin(), a.end(),
                         [&](const QString& text) { return b.removeOne(text); });
}

TEST(TextAddresses, FindsWhatAPersonWouldClickInTheCollection) {
    qsizetype lines = 0, wanted = 0, found = 0, right = 0;
    for (const Paste& paste : collection()) {
        const QStringList addresses = foundIn({paste.lines.join(u'\n')}).addresses;
        lines += paste.lines.size();
        wanted += paste.addresses.size();
        found += addresses.size();
        right += numberInBoth(addresses, paste.addresses);
        if (addresses != paste.addresses) {
            std::cout << paste.place.toStdString() << "\n  wanted "
                      << paste.addresses.join(u' ').toStdString() << "\n  found  "
                      << addresses.join(u' ').toStdString() << "\n";
        }
    }
    const double recall = static_cast<double>(right) / static_cast<double>(wanted);
    std::cout << lines << " lines, " << wanted << " addresses, recall " << recall << ", precision "
              << static_cast<double>(right) / static_cast<double>(found) << "\n";
    EXPECT_GE(lines, 150);
    EXPECT_GE(recall, 0.95);
    EXPECT_EQ(found, right) << "nothing is found that is none";
}

TEST(TextAddresses, WhatIsOneAddressAsItStandsStaysOne) {
    const QString cases[][2] = {
        {u"http://a.example/a b\u00e4"_s, u"http://a.example/a%20b%C3%A4"_s},
        {u"http://a.example/My Folder/x.zip"_s, u"http://a.example/My%20Folder/x.zip"_s},
        {u"http://a.example/x;y,z"_s, u"http://a.example/x;y,z"_s},
        {u"http://a.example/it's"_s, u"http://a.example/it's"_s},
        {u"http://a.example/Foo,_Inc."_s, u"http://a.example/Foo,_Inc."_s},
        {u"http://a.example/x|y"_s, u"http://a.example/x%7Cy"_s},
        {u"<a href=\"http://a.example/x\">http://b.example/</a>"_s, u"http://a.example/x"_s},
        {u"http://r.example/?u=http://a.example/x"_s, u"http://a.example/x"_s},
        {u"http://a.example/{ 1 , 2 }"_s, u"http://a.example/1 http://a.example/2"_s},
        {u"file:///a b"_s, u"file:///a%20b"_s},
    };
    for (const auto& [text, addresses] : cases)
        EXPECT_EQ(foundIn({text}).addresses.join(u' '), addresses) << qPrintable(text);
}

TEST(TextAddresses, BlanksSeparateAddresses) {
    const QStringList both{u"http://a.example/1"_s, u"http://b.example/2"_s};
    for (const QString& separator : {u" "_s, u"\t"_s, u", "_s, u";"_s, u"; "_s, u"\n"_s})
        EXPECT_EQ(foundIn({both.join(separator)}).addresses, both) << qPrintable(separator);
    const QString wrapped = u"http://r.example/?u="_s + both[0];
    EXPECT_EQ(foundIn({wrapped + u' ' + both[1]}).addresses, both);
}

TEST(TextAddresses, EachLineBreakEndsAnItem) {
    const QStringList all{u"http://a/1"_s, u"http://a/2"_s, u"http://a/3"_s};
    for (const QString& newline :
         {u"\n"_s, u"\r"_s, u"\r\n"_s, u"\u2028"_s, u"\u2029"_s, u"\u0085"_s, u"\n \n"_s})
        EXPECT_EQ(foundIn({all.join(newline)}).addresses, all);
    EXPECT_EQ(foundIn({u"http://a/1\nhttp://a/2"_s, u"http://a/3"_s}).addresses, all);
}

TEST(TextAddresses, GoesOnWhereAMailProgramBrokeOff) {
    const QString start = u"https://example.org/"_s + QString(50, u'a') + u"/b"_s;
    ASSERT_EQ(start.size(), 72);
    const QString one = start + u"/c.zip"_s;
    EXPECT_EQ(foundIn({start + u"\n/c.zip\n"_s}).addresses, QStringList{one});
    EXPECT_EQ(foundIn({u"> "_s + start + u"\n> /c.zip"_s}).addresses, QStringList{one});
    EXPECT_EQ(foundIn({start + u"=\r\n/c.zip and more"_s}).addresses, QStringList{one});
    EXPECT_EQ(foundIn({u"<http://a/\nb/c>"_s}).addresses, QStringList{u"http://a/b/c"_s});

    for (const QString& next :
         {u"http://b/"_s, u"Thanks"_s, u"see a/b"_s, u"www.b.example/"_s, u"Jo."_s})
        EXPECT_EQ(foundIn({start + u'\n' + next}).addresses.value(0), start) << qPrintable(next);
    EXPECT_EQ(foundIn({u"http://a/short\n/c.zip"_s}).addresses, QStringList{u"http://a/short"_s});
    const Found apart = foundIn({start, u"/c.zip"_s});
    EXPECT_EQ(apart.addresses, QStringList{start}) << "texts of their own";
}

TEST(TextAddresses, GivesBackUnchangedWhatIsNone) {
    const QString text =
        u"Hi Anna,\n  look: http://a.example/x.\nmagnet:?xt=1\nwww.example.org/x\nhttp://h:port/\n"
        "http://h:{a,80}/\nFile: x\nfile:x\nhttp://\n"_s;
    const Found found = foundIn({text});
    EXPECT_EQ(found.addresses, (QStringList{u"http://a.example/x"_s, u"http://h:80/"_s}));
    EXPECT_EQ(found.refused, (QStringList{u"Hi Anna,"_s, u"magnet:?xt=1"_s, u"www.example.org/x"_s,
                                          u"http://h:port/"_s, u"http://h:a/"_s, u"File: x"_s,
                                          u"file:x"_s, u"http://"_s}));
}

TEST(TextAddresses, HostileTextsEndSoon) {
    for (const QString& text :
         {u"http://"_s.repeated(20'000), u"("_s.repeated(100'000) + u"http://a/"_s,
          u"x{1-2000000000}"_s, u"http://a/{"_s.repeated(20'000),
          u"<http://a/\n"_s.repeated(20'000), u"h"_s.repeated(100'000) + u"ps://"_s,
          u"http://a/ "_s.repeated(20'000)}) {
        links::TextAddresses addresses(text, true);
        int count = 0;
        while (count < 1000 && addresses.next())
            ++count;
    }
}

}  // namespace
