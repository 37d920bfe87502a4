#include "app/checksums/checksum_list.h"

#include <QFile>

#include "app/checksums/sibling_checksums.h"
#include "app/settings.h"
#include "core_fixture.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const QString digits = QString(64, u'a');

TEST(ChecksumList, FindsTheFileInAllForms) {
    struct Case {
        QString list, content;
        bool isFound;
    };
    for (const Case& test : {
             Case{u"SHA256SUMS"_s,
                  u"# made by hand\n"_s + QString(64, u'b') + u"  b.iso\n"_s + digits +
                      u"  a.iso\r\n"_s,
                  true},
             {u"SHA256SUMS"_s, digits + u" *./images/a.iso"_s, true},
             {u"CHECKSUMS"_s, u"SHA256 (a.iso) = "_s + digits, true},
             {u"a.iso.sha256"_s, digits + u'\n', true},
             {u"b.iso.sha256"_s, digits + u'\n', false},
             {u"SHA256SUMS"_s, digits + u"  old-a.iso"_s, false},
             {u"SHA256SUMS"_s, u"<html>404</html>"_s, false},
         }) {
        const auto found = app::checksumInList(test.content.toUtf8(), test.list, u"a.iso"_s);
        EXPECT_EQ(found.has_value(), test.isFound) << qPrintable(test.content);
        if (found) {
            EXPECT_EQ(found->text(), u"sha256="_s + digits);
        }
    }
    for (const QString& name : {u"SHA256SUMS"_s, u"md5sum.txt"_s, u"a.iso.sha512"_s, u"CHECKSUM"_s})
        EXPECT_TRUE(app::isChecksumListName(name)) << qPrintable(name);
    for (const QString& name : {u"sums.ods"_s, u"a.iso"_s, u"sha256"_s})
        EXPECT_FALSE(app::isChecksumListName(name)) << qPrintable(name);
}

class SiblingChecksumsTest : public Core {
protected:
    SiblingChecksumsTest() { defaults.set(app::settings::autoStart, false); }

    using DownloadPtr = engine::DownloadPtr;

    DownloadPtr put(const QString& address) {
        return controller->queue().add(platform::Url::parse(address), false);
    }
    /// With this content.
    void finish(engine::DQDownload& download, const QByteArray& content) {
        const QString path = folder.filePath(download.name());
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(content);
        file.close();
        download.userSettings().set(engine::keys::originalURL, download.URLString());
        download.setURL(platform::Url::fromFilePath(path));
        end(download, engine::DQDownloadStatusDone);
    }
    app::SiblingChecksums siblings{*controller};
};

TEST_F(SiblingChecksumsTest, GivesFilesBesideAListWhatItSaysOfThem) {
    const auto list = put(u"http://a.example/x/SHA256SUMS"_s);
    const auto file = put(u"http://a.example/x/a.iso"_s);
    const auto elsewhere = put(u"http://a.example/y/a.iso"_s);
    const auto known = put(u"http://a.example/x/b.iso#sha256="_s + QString(64, u'c'));
    finish(*list, (digits + u"  a.iso\n"_s + digits + u"  b.iso\n"_s).toUtf8());
    ASSERT_TRUE(
        main.waitUntil([&] { return file->userSettings().contains(engine::keys::checksum); }));
    EXPECT_EQ(file->userSettings().string(engine::keys::checksum), u"sha256="_s + digits);
    EXPECT_FALSE(elsewhere->userSettings().contains(engine::keys::checksum));
    EXPECT_EQ(known->userSettings().string(engine::keys::checksum),
              u"sha256="_s + QString(64, u'c'))
        << "the user knows better";

    const auto later = put(u"http://a.example/x/a.iso"_s);
    finish(*later, "not it");
    ASSERT_TRUE(main.waitUntil([&] { return later->isWrongFile(); }));
}

}  // namespace
