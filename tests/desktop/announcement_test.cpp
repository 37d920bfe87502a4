#include "desktop/announcements/announcement.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include "desktop/announcements/tiff.h"
#include "support/log_recorder.h"

using namespace Qt::Literals::StringLiterals;
using desktop::receivedAnnouncement;
using desktop::transportString;

namespace {

QImage picture() {
    QImage image(64, 64, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, QColor(x * 4, y * 4, 90, 255 - x));
    }
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    return image;
}

QJsonObject payload(const desktop::Announcement& announcement) {
    const auto text = transportString(announcement);
    return QJsonDocument::fromJson(text.value_or(QString()).toUtf8()).object();
}

/// The announcement with one of its values changed; a null one is left out.
QString changed(const QString& key, const QJsonValue& value) {
    QJsonObject object = payload({u"a.b"_s, picture(), u"7"_s});
    if (value.isNull())
        object.remove(key);
    else
        object.insert(key, value);
    return QString::fromUtf8(QJsonDocument(object).toJson());
}

TEST(Announcement, HoldsOnlyWhatThereIs) {
    EXPECT_EQ(payload({}).keys(), (QStringList{u"Format"_s, u"Identifier"_s, u"User"_s}));
    EXPECT_EQ(payload({}).value(u"Format"_s), u"1"_s);
    EXPECT_EQ(payload({}).value(u"Identifier"_s), u"com.tarnworks.Orlop"_s);
    EXPECT_EQ(QByteArray::fromBase64(payload({}).value(u"User"_s).toString().toLatin1()).size(),
              20);
    EXPECT_FALSE(payload({.badge = u"0"_s}).contains(u"Badge"_s));
    EXPECT_EQ(payload({u"x.y"_s, {}, u"12"_s}).value(u"Badge"_s), u"12"_s);
    const QString image = payload({.image = picture()}).value(u"Image"_s).toString();
    EXPECT_FALSE(image.contains(u'\n'));
    const QByteArray tiff = QByteArray::fromBase64(image.toLatin1());
    EXPECT_TRUE(tiff.startsWith("II*") || tiff.startsWith("MM"));
    // Tag 259, compression: 5 is LZW (TIFF 6.0).
    EXPECT_TRUE(tiff.contains(QByteArray("\x03\x01\x03\x00\x01\x00\x00\x00\x05\x00", 10)));
}

TEST(Announcement, ComesThroughAsItWas) {
    const auto plain = receivedAnnouncement(*transportString({u"a.b"_s, picture(), {}}), {});
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->identifier, u"a.b"_s);
    EXPECT_EQ(plain->image.convertToFormat(QImage::Format_ARGB32_Premultiplied), picture());
    EXPECT_EQ(plain->combinedImage, plain->image);
    const auto bare = receivedAnnouncement(*transportString({}), {});
    ASSERT_TRUE(bare);
    EXPECT_TRUE(bare->combinedImage.isNull()) << "back to the plain icon";

    const auto badged = receivedAnnouncement(*transportString({{}, picture(), u"3"_s}), {});
    const auto local = desktop::composedLocally({{}, picture(), u"3"_s}, {});
    ASSERT_TRUE(badged && local);
    EXPECT_EQ(badged->combinedImage.size(), picture().size());
    EXPECT_NE(badged->combinedImage.pixelColor(55, 10), badged->image.pixelColor(55, 10));
    EXPECT_EQ(badged->combinedImage.pixelColor(10, 55), badged->image.pixelColor(10, 55));
    EXPECT_EQ(local->combinedImage, badged->combinedImage);
}

TEST(Announcement, ABareBadgeGoesOntoTheProgramsOwnIcon) {
    const QString text = *transportString({u"a.b"_s, {}, u"3"_s});
    const auto received = receivedAnnouncement(text, [](const QString& identifier) {
        EXPECT_EQ(identifier, u"a.b"_s);
        return picture();
    });
    ASSERT_TRUE(received);
    EXPECT_TRUE(received->image.isNull());
    EXPECT_EQ(received->combinedImage.size(), picture().size());
    const support::LogRecorder log;
    const auto unknown = receivedAnnouncement(text, {});
    EXPECT_TRUE(unknown && unknown->combinedImage.isNull());
    EXPECT_TRUE(log.contains(u"[AIH] cannot identify base icon"_s));
}

TEST(Announcement, WhatIsHostileIsDroppedAndSaid) {
    // A header of TIFF that promises 60,000 by 60,000 pixels in a few bytes.
    QByteArray bomb = *desktop::tiffOfImage(picture());
    for (const char tag : {'\x00', '\x01'}) {
        const QByteArray entry = tag + QByteArray("\x01\x03\x00\x01\x00\x00\x00", 7);
        const qsizetype at = bomb.indexOf(entry);
        ASSERT_GT(at, 0);
        bomb.replace(at + 8, 2, QByteArray("\x60\xea", 2));
    }
    struct Case {
        QString text;
        const char16_t* line;
    };
    for (const Case& test :
         {Case{QString(17 * 1024 * 1024, u'x'), u"[AIH] cannot decode"},
          {u"{\"User\""_s, u"[AIH] cannot deserialize: "},
          {u"[1]"_s, u"[AIH] cannot deserialize: no object"},
          {changed(u"User"_s, {}), nullptr},
          {changed(u"User"_s, u"c29tZWJvZHkgZWxzZQ=="_s), nullptr},
          {changed(u"User"_s, 5), nullptr},
          {changed(u"Identifier"_s, {}), u"[AIH] missing bundle identifier"},
          {changed(u"Image"_s, u"not Base64!"_s), u"[AIH] cannot decode image"},
          {changed(u"Image"_s, u"bm8gVElGRg=="_s), u"[AIH] cannot decompress image"},
          {changed(u"Image"_s, QString::fromLatin1(bomb.toBase64())),
           u"[AIH] cannot decompress image"}}) {
        const support::LogRecorder log;
        EXPECT_FALSE(receivedAnnouncement(test.text, {})) << qPrintable(test.text.left(40));
        if (test.line)
            EXPECT_TRUE(log.contains(QString::fromUtf16(test.line)))
                << qPrintable(log.lines().join(u'\n'));
        else
            EXPECT_TRUE(log.lines().isEmpty()) << "nobody else's business";
    }
    EXPECT_TRUE(receivedAnnouncement(changed(u"Format"_s, u"99"_s), {}));
}

}  // namespace
