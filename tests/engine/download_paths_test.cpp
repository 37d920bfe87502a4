#include "engine/paths/download_paths.h"

#include <QDir>

#include "engine/paths/intermediate_files.h"
#include "engine/paths/support_folder.h"
#include "engine/settings.h"
#include "engine_fixture.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;

class DownloadPathsTest : public EngineTest {
protected:
    DownloadPtr add(const QString& name) {
        auto download = owner.add(u"http://example.org/x"_s);
        download->setName(name);
        return download;
    }
    static QString partial(const DownloadPtr& download) {
        return download->paths().chooseIntermediateDownloadTargetPath();
    }
};

TEST_F(DownloadPathsTest, PartialDataLiesInAContainerOfItsOwn) {
    EXPECT_EQ(partial(add(u"a/b:c.zip"_s)), downloadedPath(u"a|b_c.zip.orlop/a|b_c.zip"_s));
    EXPECT_EQ(partial(add(u"a/b:c.zip"_s)), downloadedPath(u"a|b_c.zip 1.orlop/a|b_c.zip"_s));
    const auto renamed = add(u"old"_s);
    const QString before = partial(renamed);
    renamed->setName(u"new"_s);
    EXPECT_EQ(partial(renamed), before);
    EXPECT_EQ(renamed->finalDownloadTargetPath(), downloadedPath(u"new"_s));
    EXPECT_EQ(partial(add(QString(300, u'x'))).section(u'/', -1).size(), 255 - 48);
}

TEST_F(DownloadPathsTest, PartialDataLiesInOurFolderIfItMust) {
    set(settings::intermediatesLocation, qint64{0});
    const auto plain = add(u"a"_s);
    EXPECT_EQ(partial(plain), path(u"support/Downloads/a"_s));
    EXPECT_EQ(plain->downloadContainerPath(), QString());
    write(path(u"support/Downloads/a"_s), "x");
    EXPECT_EQ(partial(add(u"a"_s)), path(u"support/Downloads/a 1"_s));
    set(settings::intermediatesLocation, qint64{1});
    environment.confirmWriteAccess = [](const QString&, const QString&) {
        return WriteAccess{false, {}, {}};
    };
    EXPECT_EQ(partial(add(u"b"_s)), path(u"support/Downloads/b"_s));
    EXPECT_EQ(add(u"b"_s)->finalDownloadTargetPath(), QString());
}

TEST_F(DownloadPathsTest, FilesGoWhereAnUnlockedFolderIsReached) {
    set(settings::intermediatesLocation, qint64{1});
    QDir().mkpath(path(u"document"_s));
    environment.confirmWriteAccess = [this](const QString&, const QString&) {
        return WriteAccess{true, u"/host"_s, path(u"document"_s)};
    };
    EXPECT_EQ(partial(add(u"a"_s)), path(u"document/a.orlop/a"_s));
    EXPECT_EQ(add(u"b"_s)->finalDownloadTargetPath(), path(u"document/b"_s));
    const auto chosen = add(u"c"_s);
    chosen->userSettings().set(keys::downloadFile, path(u"Other/name"_s));
    EXPECT_EQ(chosen->finalDownloadTargetPath(), path(u"document/name"_s));
}

TEST_F(DownloadPathsTest, FolderIsChosenInOrder) {
    const auto download = add(u"a.zip"_s);
    owner.rules = {QVariantMap{{u"Hosts"_s, QStringList{u"example.org"_s}}},
                   QVariantMap{{u"Extensions"_s, QStringList{u"zip"_s}},
                               {u"Downloads Folder"_s, path(u"Zips"_s)}}};
    set(settings::subdivisionFormatDefault, u"yyyy"_s);
    set(settings::subdivisionFormatRules, u"yyyy/MM"_s);
    EXPECT_EQ(download->downloadBasePath(), path(u"Zips/2027/01"_s));
    // A choice that is the general folder anyway beats no rule.
    download->userSettings().set(keys::downloadFolder, path(u"Downloads"_s));
    EXPECT_EQ(download->downloadBasePath(), path(u"Zips/2027/01"_s));
    download->userSettings().set(keys::downloadFolder, path(u"downloads"_s));
    EXPECT_EQ(download->downloadBasePath(), path(u"downloads"_s)) << "another folder on Linux";
    download->userSettings().set(keys::downloadFolder, path(u"Chosen"_s));
    EXPECT_EQ(download->downloadBasePath(), path(u"Chosen"_s));
    download->userSettings().set(keys::downloadFile, path(u"Other/name"_s));
    EXPECT_EQ(download->downloadBasePath(), path(u"Other"_s));
    EXPECT_EQ(download->finalDownloadTargetPath(), path(u"Other/name"_s));
    owner.rules.clear();
    const auto plain = add(u"b"_s);
    EXPECT_EQ(plain->downloadBasePath(), downloadedPath(u"2027"_s));
    main.clock.advance(366 * 86400.0);
    EXPECT_EQ(plain->downloadBasePath(), downloadedPath(u"2028"_s));
    set(settings::subdivisionDate, qint64{1});
    EXPECT_EQ(plain->downloadBasePath(), downloadedPath(u"2027"_s));
    set(settings::subdivisionFormatDefault, u"'/'"_s);
    EXPECT_EQ(plain->downloadBasePath(), path(u"Downloads"_s));
}

TEST_F(DownloadPathsTest, FragmentsStandInTheOrderOfTheirBytes) {
    const QString primary = path(u"dir/n"_s);
    for (const char* suffix :
         {"", ".orlop-xf-10", ".orlop-xf-2", ".orlop-rf-1", ".orlop-xf-2.orlop-rf-1", ".orlop-xf-1",
          "x.orlop-xf-1", ".orlopinfo"})
        write(primary + QString::fromLatin1(suffix), "12345");
    write(path(u"dir/N.orlop-xf-1"_s), "another's");
    QStringList names;
    for (const QString& found : fragmentPathsForIntermediateDownloadTargetPath(primary))
        names.append(found.section(u'/', -1));
    EXPECT_EQ(names, (QStringList{u"n.orlop-rf-1"_s, u"n.orlop-xf-1"_s, u"n.orlop-xf-2"_s,
                                  u"n.orlop-xf-2.orlop-rf-1"_s, u"n.orlop-xf-10"_s}));
    const PartialFileSizes sizes = measurePartialFiles(primary);
    EXPECT_EQ(sizes.total, 30);
    EXPECT_EQ(sizes.byPath.value(primary), 5);
    EXPECT_EQ(sizes.byPath.value(primary + u".orlop-xf-2"_s), 10);
    removePartialFiles(primary);
    EXPECT_EQ(QDir(path(u"dir"_s)).entryList(QDir::Files),
              (QStringList{u"N.orlop-xf-1"_s, u"n.orlopinfo"_s, u"nx.orlop-xf-1"_s}));
    EXPECT_EQ(measurePartialFiles(primary).total, 0);
}

TEST_F(DownloadPathsTest, EmptiedQueueLeavesNoFiles) {
    write(queueArchivePath(environment), "x");
    write(intermediateDownloadBasePath(environment) + u"/a"_s, "x");
    EXPECT_FALSE(engine::removeIntermediateFiles(environment));
    EXPECT_TRUE(QDir(path(u"support"_s)).isEmpty());
    environment.applicationSupportPath = [] { return QString(); };
    EXPECT_EQ(intermediateDownloadBasePath(environment), QDir::tempPath());
}

}  // namespace
}  // namespace engine_test
