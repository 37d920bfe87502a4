// Folders that a sandboxed program may write to only if the user unlocked them.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QDir>
#include <QTemporaryDir>

#include "app/folders/security_scoped_bookmark_manager.h"
#include "app/settings.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"
#include "support/log_recorder.h"
#include "support/manual_clock.h"
#include "support/memory_front_end.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using Manager = app::DQSecurityScopedBookmarkManager;

/// A host and the portal's documents as two folders, of which only the documents can be reached.
class FolderAccessTest : public testing::Test {
protected:
    FolderAccessTest() {
        QDir(root.path()).mkpath(u"host/Music/Live"_s);
        QDir(root.path()).mkpath(u"documents/1/Music"_s);
        QDir(root.path()).mkpath(u"documents/2/host"_s);
        sandbox.isSandboxed = true;
        sandbox.canAccess = [this](const QString& path, int mode) {
            return path.startsWith(documents) &&
                   ::access(QFile::encodeName(path).constData(), mode) == 0;
        };
        sandbox.hostPath = [this](const QString& path) {
            if (!tellsHostPaths)
                return QString();
            if (path == music)
                return host + u"/Music"_s;
            return path == all ? host : QString();
        };
    }

    Manager manager() { return Manager(defaults, clock, frontEnd, sandbox); }
    QStringList keys() const { return defaults.get(app::settings::securityScopedBookmarks).keys(); }

    QTemporaryDir root;
    const QString host = QFileInfo(root.path()).canonicalFilePath() + u"/host"_s;
    const QString documents = QFileInfo(root.path()).canonicalFilePath() + u"/documents"_s;
    const QString music = documents + u"/1/Music"_s;
    const QString all = documents + u"/2/host"_s;
    bool tellsHostPaths = true;
    platform::UserDefaults defaults{root.path(), u"test"_s};
    support::ManualClock clock;
    support::MemoryFrontEnd frontEnd;
    app::SandboxView sandbox;
};

TEST_F(FolderAccessTest, OutsideASandboxPermissionsDecide) {
    sandbox.isSandboxed = false;
    frontEnd.unlocked = {music};
    EXPECT_FALSE(manager()
                     .confirmWriteAccess(host + u"/Music"_s, Manager::Panel::Shown, u"why"_s)
                     .isGranted);
    const auto open = manager().confirmWriteAccess(music, Manager::Panel::Shown, u"why"_s);
    EXPECT_TRUE(open.isGranted);
    EXPECT_EQ(open.path, music);
    EXPECT_TRUE(frontEnd.askedToUnlock.isEmpty());
}

TEST_F(FolderAccessTest, UnlockedOnceAFolderIsReachedWithWhatLiesInIt) {
    frontEnd.unlocked = {music};
    const QString folder = host + u"/Music"_s;
    EXPECT_FALSE(manager().confirmWriteAccess(folder, Manager::Panel::Never, {}).isGranted);
    const auto unlocked = manager().confirmWriteAccess(folder, Manager::Panel::Shown, u"why"_s);
    EXPECT_TRUE(unlocked.isGranted);
    EXPECT_EQ(unlocked.path, music);
    EXPECT_EQ(frontEnd.askedToUnlock, QStringList(folder + u": why"_s));

    Manager later = manager();
    const auto below = later.confirmWriteAccess(folder + u"/2026/May"_s, Manager::Panel::Shown, {});
    EXPECT_TRUE(below.isGranted);
    EXPECT_EQ(below.path, music + u"/2026/May"_s);
    EXPECT_EQ(below.bookmarkPath, folder);
    EXPECT_TRUE(QFileInfo(below.path).isDir());
    EXPECT_FALSE(
        later.confirmWriteAccess(host + u"/Musical"_s, Manager::Panel::Never, {}).isGranted);
    EXPECT_EQ(frontEnd.askedToUnlock.size(), 1);
}

TEST_F(FolderAccessTest, AParentTakesThePlaceOfItsFolders) {
    EXPECT_EQ(manager().keepChosenFolder(music), host + u"/Music"_s);
    EXPECT_EQ(keys(), QStringList(host + u"/Music"_s));
    EXPECT_EQ(manager().keepChosenFolder(all), host);
    EXPECT_EQ(keys(), QStringList(host));
    EXPECT_EQ(manager().keepChosenFolder(music), host + u"/Music"_s);
    EXPECT_EQ(keys(), QStringList(host)) << "covered already";
    // Given back by the portal: the folder is asked for anew.
    QDir(all).removeRecursively();
    EXPECT_FALSE(manager().confirmWriteAccess(host, Manager::Panel::Never, {}).isGranted);
    EXPECT_TRUE(manager().createBookmark(music));
    EXPECT_EQ(keys(), (QStringList{host, host + u"/Music"_s}));
}

TEST_F(FolderAccessTest, TheWrongFolderUnlocksNothing) {
    support::LogRecorder log;
    frontEnd.unlocked = {music, std::nullopt};
    EXPECT_FALSE(manager()
                     .confirmWriteAccess(host + u"/Other"_s, Manager::Panel::Shown, u"why"_s)
                     .isGranted);
    EXPECT_TRUE(log.contains(u"confused by useless bookmark"_s));
    EXPECT_TRUE(keys().isEmpty());
    // Whoever says no is not asked again for each of a hundred downloads that wait.
    Manager asking = manager();
    for (int time = 0; time < 3; ++time)
        EXPECT_FALSE(asking.confirmWriteAccess(host, Manager::Panel::Shown, u"why"_s).isGranted);
    EXPECT_EQ(frontEnd.askedToUnlock.size(), 2);
    clock.advance(3);
    frontEnd.unlocked = {all};
    EXPECT_TRUE(asking.confirmWriteAccess(host, Manager::Panel::Shown, u"why"_s).isGranted);
}

TEST_F(FolderAccessTest, APortalThatDoesNotTellHostPathsIsTakenAtItsWord) {
    tellsHostPaths = false;
    frontEnd.unlocked = {music};
    const auto access =
        manager().confirmWriteAccess(host + u"/Music"_s, Manager::Panel::Shown, u"why"_s);
    EXPECT_TRUE(access.isGranted);
    EXPECT_EQ(access.path, music);
    EXPECT_EQ(manager().keepChosenFolder(all), all);
}

TEST_F(FolderAccessTest, BookmarksEditedByHandOpenNothingElse) {
    defaults.set(app::settings::securityScopedBookmarks,
                 QVariantMap{{u"relative"_s, music.toUtf8()},
                             {host, u"../.."_s},
                             {host + u"/Music"_s, QVariantList{1}},
                             {u"/"_s, (documents + u"/gone"_s).toUtf8()}});
    EXPECT_FALSE(
        manager().confirmWriteAccess(host + u"/Music"_s, Manager::Panel::Never, {}).isGranted);
    EXPECT_FALSE(
        manager().confirmReadAccess(u"relative/list.txt"_s, Manager::Panel::Never).isGranted);
}

}  // namespace
