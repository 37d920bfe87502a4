
#include "platform/files/property_list.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QStringEncoder>
#include <cmath>
#include <ctime>
#include <limits>

#include "platform/base/utc.h"

using namespace Qt::Literals::StringLiterals;
using platform::PropertyListFormat;
using platform::readPropertyList;
using platform::writePropertyList;

namespace {

QByteArray inPlist(const QByteArray& body) {
    return "<plist version=\"1.0\">" + body + "</plist>";
}

QVariantMap sample() {
    return {
        {u"text"_s, u"a < b & c > d\r\n\t é 😀 ]]> \"q\""_s},
        {u"empty"_s, QString()},
        {u"spaces"_s, u"  x  "_s},
        {u"large"_s, std::numeric_limits<qint64>::max()},
        {u"small"_s, std::numeric_limits<qint64>::min()},
        {u"byte"_s, qint64{255}},
        {u"minus"_s, qint64{-1}},
        {u"real"_s, 0.1},
        {u"whole"_s, 5.0},
        {u"endless"_s, -std::numeric_limits<double>::infinity()},
        {u"yes"_s, true},
        {u"no"_s, false},
        {u"data"_s, QByteArray("\0\1\xff", 3)},
        {u"no data"_s, QByteArray()},
        {u"date"_s, QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59), platform::utc)},
        {u"list"_s, QVariantList{u"x"_s, QVariantList(), QVariantMap(), qint64{7}}},
        {u"mark"_s, u"\ufeffx"_s},
        {u"long"_s, QString(300, u'x')},
    };
}

/// Equal in type too, all the way down.
bool isSame(const QVariant& a, const QVariant& b) {
    if (a.typeId() != b.typeId())
        return false;
    if (a.typeId() == QMetaType::QVariantMap) {
        const QVariantMap x = a.toMap(), y = b.toMap();
        return x.keys() == y.keys() && std::equal(x.begin(), x.end(), y.begin(), y.end(), isSame);
    }
    if (a.typeId() == QMetaType::QVariantList) {
        const QVariantList x = a.toList(), y = b.toList();
        return std::equal(x.begin(), x.end(), y.begin(), y.end(), isSame);
    }
    return a == b;
}

TEST(PropertyList, RoundTripsInBothFormsWithTypes) {
    for (const auto format : {PropertyListFormat::Xml, PropertyListFormat::Binary}) {
        const auto result = readPropertyList(writePropertyList(sample(), format));
        EXPECT_EQ(result.format, format);
        EXPECT_TRUE(isSame(result.value, sample())) << result.error.text.toStdString();
    }
}

TEST(PropertyList, WritesWithTabsAndKeysInOrderOfCodePoints) {
    // The supplementary character sorts first by UTF-16 units.
    const QVariantMap map{{u"\uffee"_s, 1}, {u"😀"_s, QStringList{u"<"_s}}, {u"a"_s, false}};
    EXPECT_EQ(writePropertyList(map),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
              "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
              "<plist version=\"1.0\">\n"
              "<dict>\n\t<key>a</key>\n\t<false/>\n\t<key>\uffee</key>\n\t<integer>1</integer>\n"
              "\t<key>😀</key>\n\t<array>\n\t\t<string>&lt;</string>\n\t</array>\n</dict>\n"
              "</plist>\n");
}

TEST(PropertyList, ReplacesCharactersThatXmlCannotCarry) {
    const QString bad = u"a\u0001b\ufffec"_s + QChar(0xD800) + u"d"_s;
    const QString read = readPropertyList(writePropertyList(bad)).value.toString();
    // A key that changes takes its new place, and keys that have become equal are one.
    const QVariantMap map{{u"\u0001"_s, 1}, {u"\u0002"_s, 2}, {u"z"_s, 3}};
    EXPECT_EQ(readPropertyList(writePropertyList(map)).value,
              QVariantMap({{u"z"_s, 3}, {u"\ufffd"_s, 1}}));
    EXPECT_TRUE(read.startsWith(u"a\ufffdb\ufffdc"_s) && read.endsWith(u'd')) << read.toStdString();
}

TEST(PropertyList, KeepsUnsignedIntegersOf64Bits) {
    const QVariantList numbers{std::numeric_limits<quint64>::max(), quint64{1} << 63,
                               std::numeric_limits<qint64>::max(), qint64{-1}};
    for (const auto format : {PropertyListFormat::Xml, PropertyListFormat::Binary}) {
        const QVariant read = readPropertyList(writePropertyList(numbers, format)).value;
        ASSERT_EQ(read, QVariant(numbers));
        for (qsizetype i = 0; i < numbers.size(); ++i)
            EXPECT_EQ(read.toList()[i].typeId(), numbers[i].typeId());
    }
    EXPECT_EQ(platform::propertyListValue(quint64{7}).typeId(), QMetaType::LongLong);
}

TEST(PropertyList, DoesNotWriteWhatItCannotHold) {
    const QList<QVariant> impossible{QVariant(), QVariantList{QVariant()},
                                     QVariantMap{{u"k"_s, QVariant::fromValue(QChar())}},
                                     QDateTime()};
    for (const QVariant& value : impossible) {
        EXPECT_EQ(writePropertyList(value), QByteArray()) << value.typeName();
        EXPECT_EQ(writePropertyList(value, PropertyListFormat::Binary), QByteArray());
        EXPECT_FALSE(platform::propertyListValue(value).isValid());
    }
    QVariant deep = true;
    for (int i = 0; i < 511; ++i)
        deep = QVariantList{deep};
    EXPECT_TRUE(readPropertyList(writePropertyList(deep)).value.isValid());
    EXPECT_EQ(writePropertyList(QVariantList{deep}), QByteArray());
    EXPECT_EQ(writePropertyList(QVariantList{deep}, PropertyListFormat::Binary), QByteArray());
}

TEST(PropertyList, ReadsWhatOtherWritersWrite) {
    const QList<std::pair<QByteArray, QVariant>> cases{
        {"<integer> -0x10 </integer>", qint64{-16}},
        {"<integer>+7</integer>", qint64{7}},
        {"<real>+Infinity</real>", std::numeric_limits<double>::infinity()},
        {"<real>1e3</real>", 1000.0},
        {"<true></true>", true},
        {"<string>a<!-- no -->b<![CDATA[<c>]]></string>", u"ab<c>"_s},
        {"<!-- note --><data>\n\tAAH/\n</data>", QByteArray("\0\1\xff", 3)},
        {"<array/>", QVariantList()},
        {"<string a='>' b = \"'\" >\r\n&#x1F600;&#65;&apos;<?pi?></string >", u"\n😀A'"_s},
    };
    for (const auto& [text, value] : cases)
        EXPECT_TRUE(isSame(readPropertyList(inPlist(text)).value, value)) << text.constData();
    const QString text =
        u"<?xml version='1.0' encoding='ISO-8859-1'?><plist><string>é</string></plist>"_s;
    const QByteArray utf16 =
        QStringEncoder(QStringEncoder::Utf16, QStringEncoder::Flag::WriteBom)(text);
    for (const QByteArray& encoded : {text.toLatin1(), utf16, "\xEF\xBB\xBF" + text.toUtf8()})
        EXPECT_EQ(readPropertyList(encoded).value, u"é"_s) << encoded.toHex().constData();
    EXPECT_TRUE(std::isnan(readPropertyList(inPlist("<real>nan</real>")).value.toDouble()));
}

TEST(PropertyList, ReadsATextOfManyReferencesInNoTime) {
    const QString text = u"<div>"_s.repeated(200'000);
    const std::clock_t before = std::clock();
    EXPECT_EQ(readPropertyList(writePropertyList(text)).value.toString(), text);
    EXPECT_LT(std::clock() - before, 5 * CLOCKS_PER_SEC);
}

TEST(PropertyList, RefusesWhatIsNoPropertyListAndSaysWhere) {
    const QList<QByteArray> wrong{
        "",
        "text",
        "<dict/>",
        inPlist(""),
        inPlist("<string>a</string><string>b</string>"),
        inPlist("<dict><string>no key</string></dict>"),
        inPlist("<dict><key>no value</key></dict>"),
        inPlist("<dict>text<key>k</key><true/></dict>"),
        inPlist("<array><strange/></array>"),
        inPlist("<string><b>bold</b></string>"),
        inPlist("<integer>12a</integer>"),
        inPlist("<integer></integer>"),
        inPlist("<integer>--1</integer>"),
        inPlist("<integer>18446744073709551616</integer>"),
        inPlist("<integer>-9223372036854775809</integer>"),
        inPlist("<real>fast</real>"),
        inPlist("<date>2000-02-30T00:00:00Z</date>"),
        inPlist("<data>A?==</data>"),
        inPlist("<true>yes</true>"),
        inPlist("<array>"),
        inPlist("<string>&unknown;</string>"),
        inPlist("<true/>") + "tail",
        inPlist("<true/>") + inPlist("<true/>"),
        inPlist("<string>&#1;&#xD800;</string>"),
        inPlist("<string>&#x 41;</string>"),
        inPlist("<string>&"),
        inPlist("<string>\x01</string>"),
        inPlist("<string>\xff</string>"),
        inPlist("<!-- <true/> <!-- --><false/>"),
        inPlist("<array></dict>"),
        inPlist("<array a></array>"),
        inPlist("<array a='></array>"),
        inPlist("<></>"),
        inPlist("<![CDATA[ ]]>"),
        inPlist("<string><![CDATA[x"),
        "<!DOCTYPE plist",
        "<plist><string><!--x--",
        "<plist><string><!DOCTYPE plist",
        "<?xml version='1.0' encoding='klingon'?>" + inPlist("<true/>"),
        "<!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;\">]>" +
            inPlist("<string>&b;</string>"),
        inPlist(QByteArray("<array>").repeated(600) + QByteArray("</array>").repeated(600)),
        QByteArray(65 * 1024 * 1024, ' '),
    };
    for (const QByteArray& text : wrong) {
        const auto result = readPropertyList(text);
        EXPECT_FALSE(result.value.isValid()) << text.left(80).constData();
        EXPECT_FALSE(result.error.text.isEmpty()) << text.left(80).constData();
    }
    const auto error = readPropertyList("<plist>\n<array>\n  <strange/>\n</array></plist>").error;
    EXPECT_EQ(error.text, u"<strange> is no element of property lists."_s);
    EXPECT_EQ(error.line, 3);
    EXPECT_EQ(error.column, 3);
}

/// A binary list of tiny objects: one-byte offsets and references.
QByteArray binary(const QList<QByteArray>& objects) {
    QByteArray data = "bplist00";
    QByteArray offsets;
    for (const QByteArray& object : objects) {
        offsets += static_cast<char>(data.size());
        data += object;
    }
    const auto table = static_cast<char>(data.size());
    data += offsets + QByteArray(6, '\0') + "\1\1" + QByteArray(7, '\0') +
            static_cast<char>(objects.size()) + QByteArray(15, '\0') + table;
    return data;
}

TEST(PropertyList, BinaryReadsNumbersOfAllSizes) {
    const auto value =
        readPropertyList(binary({"\xa4\1\2\3\4"_ba, "\x13\xff\xff\xff\xff\xff\xff\xff\xfe"_ba,
                                 "\x14\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\7"_ba, "\x22\x3f\x80\0\0"_ba,
                                 "\x11\xff\xff"_ba}))
            .value;
    EXPECT_TRUE(isSame(value, QVariantList{qint64{-2}, qint64{7}, 1.0, qint64{65535}}));
}

TEST(PropertyList, BinaryRefusesHostileFiles) {
    const QList<QByteArray> wrong{
        "bplist00",
        "bplist00" + QByteArray(40, '\xff'),
        binary({"\xa1\0"_ba}),                                    // contains itself
        binary({"\xa1\5"_ba}),                                    // refers to nothing
        binary({"\xd1\1\1"_ba, "\x10\1"_ba}),                     // a number as key
        binary({"\x5f\x13\x7f\xff\xff\xff\xff\xff\xff\xff"_ba}),  // length past the end
        binary({"\xaf\x12\xff\xff\xff\xff"_ba}),
        binary({"\x14\xff\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"_ba}),  // does not fit
        binary({"\x33\x7f\xf0\0\0\0\0\0\0"_ba}),                // an endless date
        binary({"\x00"_ba}),
        binary({"\x80\1"_ba}),
    };
    for (const QByteArray& data : wrong) {
        const auto result = readPropertyList(data);
        EXPECT_FALSE(result.value.isValid()) << data.toHex().constData();
        EXPECT_FALSE(result.error.text.isEmpty());
    }
    // Each of thirty lists holds the next one twice: a billion values in a hundred bytes.
    QList<QByteArray> bomb;
    for (char i = 1; i <= 30; ++i)
        bomb.append(QByteArray("\xa2") + i + i);
    bomb.append("\x09");
    EXPECT_FALSE(readPropertyList(binary(bomb)).value.isValid());
    // Every cut and every flipped byte is refused or read, without a fault.
    const QByteArray good = writePropertyList(sample(), PropertyListFormat::Binary);
    for (qsizetype i = 0; i < good.size(); ++i) {
        EXPECT_FALSE(readPropertyList(good.first(i)).value.isValid());
        QByteArray flipped = good;
        flipped[i] = static_cast<char>(~flipped[i]);
        const auto result = readPropertyList(flipped);
        EXPECT_NE(result.value.isValid(), !result.error.text.isEmpty());
    }
}

}  // namespace
