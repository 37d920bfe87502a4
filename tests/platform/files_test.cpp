#include "platform/files/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cerrno>

#include "platform/files/mounts.h"

using namespace Qt::Literals::StringLiterals;

namespace {

struct FilesTest : testing::Test {
    QTemporaryDir folder;

    [[nodiscard]] QString at(const QString& name) const { return folder.filePath(name); }

    QString put(const QString& name, const QByteArray& content) const {
        QFile file(at(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return at(name);
    }

    [[nodiscard]] static QByteArray contents(const QString& path) {
        return platform::readFile(path, 1'000'000).data;
    }

    /// Names in the folder, hidden ones too: nothing temporary must stay.
    [[nodiscard]] QStringList names() const {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
};

TEST(Tilde, StandsForTheHomeFolderOnly) {
    const QString home = QDir::homePath();
    EXPECT_EQ(platform::expandTilde(u"~/a b"_s), home + u"/a b"_s);
    EXPECT_EQ(platform::expandTilde(u"~"_s), home);
    EXPECT_EQ(platform::expandTilde(u"~other/x"_s), u"~other/x"_s);
    EXPECT_EQ(platform::expandTilde(u"/x/~"_s), u"/x/~"_s);
    EXPECT_EQ(platform::abbreviateWithTilde(home + u"/a"_s), u"~/a"_s);
    EXPECT_EQ(platform::abbreviateWithTilde(home), u"~"_s);
    EXPECT_EQ(platform::abbreviateWithTilde(home + u"stead/a"_s), home + u"stead/a"_s);
}

TEST_F(FilesTest, FollowsLinksToWhereAFileIsOrWouldBe) {
    const QString real = QDir(folder.path()).canonicalPath();
    ASSERT_TRUE(QDir(real).mkdir(u"deep"_s));
    ASSERT_TRUE(QFile::link(real + u"/deep"_s, at(u"short"_s)));
    ASSERT_TRUE(QFile::link(real + u"/deep/later"_s, at(u"dangling"_s)));
    EXPECT_EQ(platform::resolvedPath(at(u"short/"_s)), real + u"/deep"_s);
    EXPECT_EQ(platform::resolvedPath(at(u"short/../new/file"_s)), real + u"/new/file"_s);
    EXPECT_EQ(platform::resolvedPath(at(u"dangling"_s)), real + u"/deep/later"_s);
    EXPECT_EQ(platform::resolvedPath(u"/nowhere/at all"_s), u"/nowhere/at all"_s);
    EXPECT_EQ(platform::resolvedPath(u"/"_s), u"/"_s);
    EXPECT_EQ(platform::resolvedPath(u"short"_s), QString());
}

TEST_F(FilesTest, LinksInACircleLeadNoFurther) {
    ASSERT_TRUE(QFile::link(at(u"there"_s), at(u"here"_s)));
    ASSERT_TRUE(QFile::link(at(u"here"_s), at(u"there"_s)));
    EXPECT_TRUE(platform::resolvedPath(at(u"here/file"_s)).endsWith(u"here/file"_s));
}

TEST_F(FilesTest, WritesAtomicallyAndForTheOwnerOnly) {
    const QString path = put(u"a"_s, "old");
    ASSERT_EQ(platform::writeFileAtomically(path, "new"), std::nullopt);
    EXPECT_EQ(contents(path), "new");
    struct stat status {};
    ASSERT_EQ(stat(path.toUtf8().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    EXPECT_EQ(names(), QStringList{u"a"_s});
}

TEST_F(FilesTest, AFailedWriteLeavesNothingBehind) {
    QDir().mkdir(at(u"taken"_s));
    EXPECT_NE(platform::writeFileAtomically(at(u"taken"_s), "x"), std::nullopt);
    EXPECT_EQ(names(), QStringList{u"taken"_s});
    const auto error = platform::writeFileAtomically(at(u"absent/x"_s), "x");
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->is(platform::posixErrorDomain, ENOENT));
}

TEST_F(FilesTest, WritingReplacesAPlantedLinkInsteadOfFollowingIt) {
    const QString victim = put(u"victim"_s, "precious");
    QFile::link(victim, at(u"link"_s));
    EXPECT_EQ(platform::writeFileAtomically(at(u"link"_s), "new"), std::nullopt);
    EXPECT_EQ(contents(victim), "precious");
}

TEST_F(FilesTest, RefusesToReadWhatIsTooLargeOrNoFile) {
    const QString path = put(u"a"_s, "12345");
    EXPECT_EQ(platform::readFile(path, 5).data, "12345");
    EXPECT_EQ(platform::readFile(path, 4).error->code, EFBIG);
    EXPECT_EQ(platform::readFile(at(u"none"_s), 9).error->code, ENOENT);
    EXPECT_EQ(platform::readFile(folder.path(), 9).error->code, EISDIR);
    ASSERT_EQ(mkfifo(at(u"pipe"_s).toUtf8().constData(), 0600), 0);
    EXPECT_EQ(platform::readFile(at(u"pipe"_s), 9).error->code, EINVAL);
    // Such files say that they are empty.
    EXPECT_FALSE(platform::readFile(u"/proc/self/status"_s, 100'000).data.isEmpty());
    EXPECT_EQ(platform::readFile(u"/proc/self/status"_s, 10).error->code, EFBIG);
}

TEST_F(FilesTest, MovingNeverReplaces) {
    const QString from = put(u"from"_s, "1");
    const QString taken = put(u"taken"_s, "2");
    EXPECT_EQ(platform::moveFile(from, taken)->code, EEXIST);
    EXPECT_EQ(contents(taken), "2");
    QFile::link(u"/nowhere"_s, at(u"dangling"_s));
    EXPECT_TRUE(platform::pathExists(at(u"dangling"_s)));
    EXPECT_EQ(platform::moveFile(from, at(u"dangling"_s))->code, EEXIST);
    EXPECT_EQ(platform::moveFile(from, at(u"to"_s)), std::nullopt);
    EXPECT_EQ(contents(at(u"to"_s)), "1");
    EXPECT_FALSE(platform::pathExists(from));
}

TEST_F(FilesTest, MovesAcrossFileSystems) {
    const QTemporaryDir memory(u"/dev/shm/orlop-test-XXXXXX"_s);
    struct stat here {};
    struct stat there {};
    if (!memory.isValid() || stat(folder.path().toUtf8().constData(), &here) != 0 ||
        stat(memory.path().toUtf8().constData(), &there) != 0 || here.st_dev == there.st_dev)
        GTEST_SKIP() << "needs a second file system at /dev/shm";
    const QByteArray content(3'000'000, 'x');
    const QString from = put(u"from"_s, content);
    QFile::setPermissions(from, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    const QString to = memory.filePath(u"to"_s);
    ASSERT_EQ(platform::moveFile(from, to), std::nullopt);
    EXPECT_EQ(platform::readFile(to, 4'000'000).data, content);
    ASSERT_EQ(stat(to.toUtf8().constData(), &there), 0);
    EXPECT_EQ(there.st_mode & 0777, 0640U);
    EXPECT_EQ(names(), QStringList());
    const QString second = put(u"second"_s, "2");
    EXPECT_EQ(platform::moveFile(second, to)->code, EEXIST);
    EXPECT_EQ(platform::moveFile(second, memory.filePath(u"no/folder"_s))->code, ENOENT);
    EXPECT_EQ(contents(second), "2");
    EXPECT_EQ(QDir(memory.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"to"_s});
}

TEST(Volumes, AreTheLongestMountOrARemovableMedium) {
    const QStringList mounts = platform::mountPoints(
        "21 1 8:1 / / rw - ext4 /dev/a rw\n"
        "22 21 0:5 / /run rw shared:2 - tmpfs tmpfs rw\n"
        "23 21 8:2 / /home rw - ext4 /dev/b rw\n"
        "24 21 8:3 / /media/ann/My\\040Disk\\134x rw - ext4 /dev/c rw\n"
        "25 21 8:4 / /media/usb rw - vfat /dev/d rw\n"
        "broken line\n");
    const QList<std::pair<QString, QString>> cases{
        {u"/home/ann/x"_s, u"/home"_s},
        {u"/homestead"_s, u"/"_s},
        {u"/home/../etc"_s, u"/"_s},
        {u"/media/ann/My Disk\\x/f"_s, u"/media/ann/My Disk\\x"_s},
        {u"/media/ann/Away/deep/file"_s, u"/media/ann/Away"_s},
        {u"/media/ann/Away"_s, u"/media/ann/Away"_s},
        {u"/media/ann"_s, u"/"_s},
        {u"/media/usb/a/b"_s, u"/media/usb"_s},
        {u"/run/media/ann/Away/f"_s, u"/run/media/ann/Away"_s},
        {u"/run/other"_s, u"/run"_s},
        {u"/mnt/disk/f"_s, u"/mnt/disk"_s},
        {u"/mnt"_s, u"/"_s},
    };
    for (const auto& [path, volume] : cases)
        EXPECT_EQ(platform::volumePathAmong(mounts, path), volume) << path.toStdString();
    EXPECT_EQ(platform::volumePathAmong({u"/"_s, u"/mnt"_s}, u"/mnt/disk/f"_s), u"/mnt/disk"_s);
    EXPECT_EQ(platform::volumePath(u"/proc/self/status"_s), u"/proc"_s);
}

TEST_F(FilesTest, BookmarksFindAFileThatMovedNearBy) {
    QDir(folder.path()).mkpath(u"a/inner"_s);
    QDir(folder.path()).mkpath(u"b"_s);
    const QString start = put(u"a/file"_s, "content");
    const QByteArray bookmark = platform::fileBookmark(start);
    QString now = start;
    for (const QString& next : {u"a/renamed"_s, u"a/inner/file"_s, u"b/other"_s, u"file"_s}) {
        ASSERT_TRUE(QFile::rename(now, at(next)));
        now = at(next);
        EXPECT_EQ(platform::resolveFileBookmark(bookmark), now);
    }
    ASSERT_TRUE(QFile::remove(now));
    put(u"a/stranger"_s, "content");
    EXPECT_EQ(platform::resolveFileBookmark(bookmark), QString());
    EXPECT_EQ(platform::resolveFileBookmark("garbage"), QString());
    EXPECT_EQ(platform::fileBookmark(at(u"absent"_s)), QByteArray());
}

}  // namespace
