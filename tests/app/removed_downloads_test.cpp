#include <QDir>
#include <QFile>

#include "app/commands/bulk_commands.h"
#include "app/settings.h"
#include "core_fixture.h"
#include "engine/settings.h"
#include "engine/transfer/speed_limit.h"

using namespace Qt::Literals::StringLiterals;
namespace keys = engine::keys;

namespace {

class Removed : public Core {
protected:
    /// As if so much of it had come, and then been paused.
    void begin(const QString& name) {
        const auto begun = download(name);
        begun->pause();
        begun->userSettings().set(keys::responseURL, address(name));
        begun->userSettings().set(keys::keptBytes, 12'000'000);
        QDir().mkpath(QFileInfo(partialFile(name)).path());
        ASSERT_EQ(platform::writeFileAtomically(partialFile(name), "some"), std::nullopt);
        begun->setIntermediateDownloadTargetPath(partialFile(name));
    }
    QString partialFile(const QString& name) const {
        return engine::intermediateDownloadBasePath(environment) + u'/' + name;
    }
    void remove(const QStringList& removed) {
        Downloads downloads;
        for (const QString& name : removed) {
            downloads.push_back(download(name));
        }
        app::withdraw(controller->queue(), downloads);
    }
    void giveTheDiskTime() {
        disks.waitForDone();
        main.settle();
    }
};

TEST_F(Removed, ComesBackToItsPlaceOneRemovalAfterTheOther) {
    add({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s});
    end(*download(u"e"_s), engine::DQDownloadStatusDone);
    remove({u"b"_s, u"d"_s});
    EXPECT_EQ(controller->lastRemoval(), u"Removed 2 downloads"_s);
    download(u"a"_s)->withdraw();
    controller->clear();
    EXPECT_EQ(queue(), QStringList{u"c"_s});

    controller->undoRemoval();
    EXPECT_EQ(queue(), QStringList({u"c"_s, u"e"_s}));
    EXPECT_EQ(download(u"e"_s)->status(), engine::DQDownloadStatusDone);
    controller->undoRemoval();
    controller->undoRemoval();
    EXPECT_EQ(queue(), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}));
    EXPECT_EQ(selected(), QStringList({u"b"_s, u"d"_s}));
    EXPECT_EQ(controller->tally().count(engine::DQDownloadStatusQueued), 4) << "as before";
    EXPECT_EQ(controller->lastRemoval(), QString());
    EXPECT_EQ(savedURLs(),
              QStringList({address(u"a"_s), address(u"b"_s), address(u"c"_s), address(u"d"_s)}));
}

TEST_F(Removed, GoesOnIfItDidAndElseStandsStill) {
    defaults.set(engine::settings::autoResume, true);
    add(numbered(200));
    for (const QString& name : {u"f1"_s, u"f2"_s, u"f3"_s})
        download(name)->pause();
    setStatus(*download(u"f2"_s), engine::DQDownloadStatusDownloading);
    // It would be tried again by itself.
    setStatus(*download(u"f3"_s), engine::DQDownloadStatusDownloading);
    download(u"f3"_s)->interrupt({u"test"_s, 1, u"The network is gone"_s, nullptr});
    ASSERT_TRUE(download(u"f3"_s)->isResumeArranged());
    const QStringList before = queue();
    download(u"f4"_s)->speedLimit().set(5000);
    remove(numbered(200));
    ASSERT_EQ(queue(), QStringList());
    controller->undoRemoval();
    EXPECT_EQ(queue(), before);
    EXPECT_EQ(download(u"f1"_s)->status(), engine::DQDownloadStatusPaused);
    EXPECT_EQ(controller->tally().count(engine::DQDownloadStatusQueued), 199);
    EXPECT_EQ(engine::speedLimitOf(*download(u"f4"_s)), 5000);
}

/// Rows that are still fading stand in the queue, and must not count.
TEST_F(Removed, ComesBackWhileRowsAreVanishing) {
    struct List final : app::VanishView {
        bool showsDownload(const engine::DQDownload&) const override { return true; }
        void redrawDownload(engine::DQDownload&) override {}
        void performVanishStepForObject(engine::DQDownload& download) override {
            app::mainController().rows().vanishing().performStep(download);
        }
    };
    defaults.set(engine::settings::uselessAnimations, true);
    frontEnd.vanishing = std::make_shared<List>();
    add({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    download(u"a"_s)->withdraw();
    download(u"b"_s)->withdraw();
    ASSERT_EQ(queue().size(), 4) << "fading";
    controller->undoRemoval();
    EXPECT_FALSE(controller->rows().vanishing().isVanishing(*download(u"b"_s)));
    main.advance(5);
    EXPECT_EQ(queue(), QStringList({u"b"_s, u"c"_s, u"d"_s}));
    controller->undoRemoval();
    EXPECT_EQ(queue(), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
}

TEST_F(Removed, KeepsItsDataUntilTheProgramQuits) {
    add({u"a"_s, u"b"_s});
    begin(u"a"_s);
    remove({u"a"_s});
    EXPECT_EQ(controller->lastRemoval(), u"Removed a (12 MB kept)"_s);
    controller->undoRemoval();
    EXPECT_EQ(download(u"a"_s)->intermediateDownloadTargetPath(), partialFile(u"a"_s));
    remove({u"a"_s});
    giveTheDiskTime();
    EXPECT_TRUE(QFile::exists(partialFile(u"a"_s)));
    frontEnd.onConfirm = [](const app::Alert&) { return true; };
    ASSERT_TRUE(controller->shouldQuit());
    giveTheDiskTime();
    EXPECT_FALSE(QFile::exists(partialFile(u"a"_s)));
    EXPECT_EQ(savedURLs(), QStringList{address(u"b"_s)});
}

/// The row stays away, and can still be had back.
TEST_F(Removed, StaysRemovedAndAtHandIfTheProgramIsKilled) {
    add({u"a"_s, u"b"_s, u"c"_s});
    begin(u"b"_s);
    remove({u"b"_s, u"c"_s});
    static_cast<void>(savedQueue());
    restart();
    EXPECT_EQ(queue(), QStringList{u"a"_s});
    EXPECT_EQ(controller->lastRemoval(), u"Removed b (12 MB kept)"_s);
    static_cast<void>(savedQueue());
    restart();  // Once more, to see that it is not forgotten.
    controller->undoRemoval();
    EXPECT_EQ(queue(), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(download(u"b"_s)->status(), engine::DQDownloadStatusPaused);
    EXPECT_TRUE(QFile::exists(partialFile(u"b"_s)));
    EXPECT_FALSE(savedQueue().toList().at(1).toMap().contains(keys::removedFrom));
}

TEST_F(Removed, ForgetsTheOldestOfManyAndItsData) {
    add(numbered(101));
    begin(u"f0"_s);
    for (const QString& name : numbered(100)) {
        remove({name});
    }
    giveTheDiskTime();
    EXPECT_TRUE(QFile::exists(partialFile(u"f0"_s)));
    remove({u"f100"_s});
    giveTheDiskTime();
    EXPECT_FALSE(QFile::exists(partialFile(u"f0"_s)));
}

}  // namespace
