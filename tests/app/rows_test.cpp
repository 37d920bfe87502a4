#include "app/rows/rows.h"

#include <QFile>
#include <QFileInfo>

#include "app/queue/missing_volumes.h"
#include "app/rows/vanishing.h"
#include "app/settings.h"
#include "core_fixture.h"
#include "engine/acceleration/acceleration_settings.h"
#include "engine/settings.h"
#include "support/test_worker.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace engine;
using support::TestWorker;

class RowsTest : public Core {
protected:
    app::Rows& rows() { return controller->rows(); }
    DownloadPtr one(const QString& url = u"http://a.example/a"_s, bool isQueued = false) {
        return controller->queue().add(platform::Url::parse(url), isQueued);
    }
    QString text(DQDownload& download, bool live = true) {
        return rows().texts().statusDescriptionWithLiveDetails(download, live);
    }
};

class RunningRowTest : public RowsTest {
protected:
    RunningRowTest() {
        download->becomeDownloading();
        worker->answer(1'000'000'000);
        download->transfer().addWorker(worker);
        download->dates().noteAnswer();
    }
    void receive(qint64 count) {
        worker->receive(count);
        static_cast<void>(download->transfer().noteReceivedBytes(*worker));
    }
    QString text() { return RowsTest::text(*download); }

    const DownloadPtr download = one();
    const std::shared_ptr<TestWorker> worker = TestWorker::make(controller->queue().context());
};

TEST_F(RunningRowTest, TellsBytesSpeedAndTimeLeft) {
    EXPECT_EQ(text(), u"- of 1 GB"_s);
    receive(30'000'000);
    EXPECT_EQ(text(), u"30 MB of 1 GB"_s);
    main.clock.advance(10);
    EXPECT_EQ(text(), u"30 MB of 1 GB at 3 MB/s - 5:23 remaining"_s);
    EXPECT_EQ(RowsTest::text(*download, false), u"Downloading: 3%"_s);
    receive(970'000'000);
    EXPECT_EQ(text(), u"1 GB at 100 MB/s"_s);
}

TEST_F(RunningRowTest, SpeedFollowsTheLastHalfMinute) {
    receive(1);
    for (int second = 0; second < 31; ++second) {
        main.clock.advance(1);
        receive(10'000'000);
    }
    // From here on ten times slower.
    for (int second = 0; second < 29; ++second) {
        main.clock.advance(1);
        receive(1'000'000);
    }
    EXPECT_TRUE(text().contains(u"at 1.3 MB/s"_s)) << text().toStdString();
    // Stalled for longer than a half minute: the average since the start.
    main.clock.advance(940);
    EXPECT_TRUE(text().contains(u"at 339 KB/s"_s)) << text().toStdString();
}

TEST_F(RowsTest, SaysWhatDoesNotRun) {
    const auto download = one();
    EXPECT_EQ(text(*download), u"Pending"_s);
    AccelerationSettings(defaults).setAccelerates(true);
    EXPECT_EQ(text(*download), u"Pending \u2014 Accelerate"_s);
    EXPECT_EQ(text(*download, false), u"Pending"_s);
    download->userSettings().set(keys::responseURL, u"http://a.example/a"_s);
    EXPECT_EQ(text(*download), u"Paused"_s);
    download->interrupt(platform::posixError(5));
    EXPECT_EQ(text(*download), u"Interrupted \u2014 The disk reports an error."_s);
    EXPECT_EQ(text(*download, false), u"Interrupted"_s);
    download->userSettings().remove(keys::responseURL);
    EXPECT_EQ(text(*download, false), u"Pending"_s);
    EXPECT_TRUE(text(*download).startsWith(u"Pending \u2014 The disk reports an error."_s));
    download->userSettings().set(keys::responseURL, u"http://a.example/a"_s);
    // What a row has kept, as it was written down when it stopped.
    download->setIntermediateDownloadTargetPath(folder.filePath(u"a.orlop/a"_s));
    download->userSettings().set(keys::keptBytes, 1'500'000);
    EXPECT_EQ(text(*download),
              u"Interrupted \u2014 1.5 MB kept \u2014 The disk reports an error."_s);
    download->userSettings().set(keys::expectedBytes, 4'000'000);
    EXPECT_EQ(text(*download, false), u"Interrupted \u2014 1.5 of 4 MB kept"_s);
    end(*download, DQDownloadStatusAborted);
    EXPECT_EQ(text(*download), u"Aborted \u2014 1.5 of 4 MB kept"_s);
    download->userSettings().set(keys::statusCode, 503);
    EXPECT_EQ(text(*download, false), u"Aborted \u2014 503 \u2014 1.5 of 4 MB kept"_s);
    download->paths().setIntermediateDownloadTargetPath({});
    EXPECT_EQ(text(*download, false), u"Aborted \u2014 503"_s);
    EXPECT_EQ(text(*download),
              u"Aborted \u2014 503 \u2014 The server has a fault. Try again later."_s);
    end(*download, DQDownloadStatusDone);
    EXPECT_EQ(text(*download), u"Complete \u2014 just now"_s);
}

TEST_F(RowsTest, TellsThePlaceInTheQueue) {
    Downloads queued;
    for (const char16_t* url :
         {u"http://a.example/x", u"http://b.example/x", u"http://a.example/x", u"file:///x"})
        queued.push_back(one(QString::fromUtf16(url), true));
    const auto place = [&](std::size_t index) {
        return rows().texts().queueIndexDescription(*queued[index]);
    };
    EXPECT_EQ(place(2), u"2 @ a.example"_s);
    EXPECT_EQ(place(1), u"1 @ b.example"_s);
    EXPECT_EQ(place(3), u"4"_s);
    EXPECT_EQ(text(*queued[2]), u"Waiting: #2 @ a.example"_s);
    EXPECT_EQ(text(*queued[2], false), u"Waiting"_s);
    defaults.set(settings::privateDownloading, true);
    EXPECT_EQ(place(2), u"2 @ a\u2026example"_s);
    defaults.set(settings::privateDownloading, false);
    defaults.set(settings::numberOfConcurrentDownloadsPerHost, qint64{0});
    EXPECT_EQ(place(2), u"3"_s);
    queued[1]->pause();
    EXPECT_TRUE(place(1).isNull());
}

/// Whom the server has refused, and the others that wait for the same server.
TEST_F(RowsTest, TellsForWhichServerItWaits) {
    const auto refused = one(u"http://dl.a.example/x"_s, true);
    const auto sibling = one(u"http://dl.a.example/y"_s, true);
    const auto other = one(u"http://b.example/y"_s, true);
    refused->becomeDownloading();
    const auto worker = TestWorker::make(controller->queue().context());
    ASSERT_TRUE(refused->putOff(*worker, 4000));
    EXPECT_EQ(refused->status(), DQDownloadStatusQueued);
    for (const bool live : {true, false})
        EXPECT_EQ(text(*refused, live), u"Waiting for dl.a.example: 1:06:40"_s);
    EXPECT_EQ(text(*sibling, false), u"Waiting for dl.a.example: 1:06:40"_s);
    EXPECT_EQ(text(*other, false), u"Waiting"_s);
    defaults.set(settings::privateDownloading, true);
    EXPECT_FALSE(text(*refused).contains(u"dl.a"_s));
    defaults.set(settings::privateDownloading, false);
    const auto redrawn = frontEnd.redraws;
    main.advance(3960.5);
    EXPECT_EQ(text(*refused), u"Waiting for dl.a.example: 0:40"_s);
    EXPECT_EQ(frontEnd.redraws - redrawn, 3960);
    main.advance(100);
    EXPECT_EQ(text(*refused, false), u"Waiting"_s);
    EXPECT_LE(frontEnd.redraws - redrawn, 4002);
}

/// Also those that come paused count at once.
TEST_F(RowsTest, PausedOnesNameTheirHostWhereThereAreSeveral) {
    const auto first = one();
    EXPECT_TRUE(rows().texts().pausedHostDescription(*first).isNull());
    one(u"http://b.example/x"_s);
    EXPECT_EQ(rows().texts().pausedHostDescription(*first), u" @ a.example"_s);
}

TEST_F(RowsTest, ButtonsFollowTheStatus) {
    QStringList calls;
    workspace.revealFile = [&](const QString& file) {
        calls.append(u"reveal "_s + QFileInfo(file).fileName());
        return true;
    };
    workspace.openURL = [&](const platform::Url& opened) {
        calls.append(u"open "_s + opened.lastPathComponent());
        return opened.isFile();
    };
    const app::RowActions& actions = rows().actions();
    const auto download = one();
    EXPECT_TRUE(rows().canPerformAction(*download, DQDownloadActionPrimary));
    EXPECT_FALSE(rows().canPerformAction(*download, 3));
    actions.perform(*download, DQDownloadActionPrimary);
    EXPECT_EQ(download->status(), DQDownloadStatusQueued);
    actions.perform(*download, DQDownloadActionPrimary);
    EXPECT_EQ(download->status(), DQDownloadStatusPaused);
    actions.openOriginalURL(*download);
    actions.copyPath(*download);
    EXPECT_EQ(calls, QStringList{u"open a"_s});
    EXPECT_EQ(frontEnd.beeps, 2);

    calls.clear();
    const QString file = folder.filePath(u"done.txt"_s);
    ASSERT_FALSE(platform::writeFileAtomically(file, "x"));
    const auto done = one(platform::Url::fromFilePath(file).absoluteString());
    end(*done, DQDownloadStatusDone);
    actions.perform(*done, DQDownloadActionPrimary);
    defaults.set(settings::revealByLaunching, true);
    actions.perform(*done, DQDownloadActionPrimary);
    EXPECT_EQ(calls, (QStringList{u"reveal done.txt"_s, u"open done.txt"_s}));
    end(*download, DQDownloadStatusAborted);
    actions.perform(*download, DQDownloadActionPrimary);
    const auto again = controller->downloads().front();
    EXPECT_NE(again, download);
    EXPECT_EQ(again->originalURLString(), u"http://a.example/a"_s);
}

/// A row that is drawn does not ask the disk: what it shows was found out in the background.
TEST_F(RowsTest, AddressesAreOpenedOneAfterAnother) {
    QStringList opened;
    workspace.openURL = [&](const platform::Url& url) {
        opened.append(url.lastPathComponent());
        return true;
    };
    defaults.set(app::settings::urlOpeningInterval, 2.0);
    rows().openOriginalURLs({one(), one(u"http://a.example/b"_s)});
    main.settle();
    EXPECT_EQ(opened, QStringList{u"a"_s});
    main.advance(1.9);
    EXPECT_EQ(opened.size(), 1);
    main.advance(0.2);
    EXPECT_EQ(opened, QStringList({u"a"_s, u"b"_s}));
}

TEST_F(RowsTest, MissingFileIsNoticedWithoutAskingWhileDrawing) {
    const QString file = folder.filePath(u"done.txt"_s);
    ASSERT_FALSE(platform::writeFileAtomically(file, "x"));
    const auto done = one(platform::Url::fromFilePath(file).absoluteString());
    end(*done, DQDownloadStatusDone);
    const auto canShow = [&] { return rows().canPerformAction(*done, DQDownloadActionPrimary); };
    EXPECT_TRUE(canShow());
    QFile::remove(file);
    EXPECT_TRUE(canShow()) << "asked the disk";
    for (int look = 0; look < 2; ++look) {
        disks.waitForDone();
        main.advance(3);
        static_cast<void>(canShow());
    }
    EXPECT_FALSE(canShow());
    EXPECT_TRUE(rows().canPerformAction(*done, DQDownloadActionRemove));
    EXPECT_EQ(text(*done), u"Gone from "_s + platform::abbreviateWithTilde(folder.path()));
}

/// Return, and a row's menu, on what has been deleted elsewhere: it says so and offers a way on.
TEST_F(RowsTest, GoneFilesAreToldOfAndCanBeHadAgain) {
    QStringList opened;
    workspace.openURL = [&](const platform::Url& url) {
        opened.append(url.filePath());
        return true;
    };
    const auto put = [&](const QString& name) {
        const auto done = one(u"http://a.example/"_s + name);
        const QString file = folder.filePath(name);
        EXPECT_FALSE(platform::writeFileAtomically(file, "x"));
        done->userSettings().set(keys::originalURL, done->URLString());
        done->setURL(platform::Url::fromFilePath(file));
        end(*done, DQDownloadStatusDone);
        return done;
    };
    const auto kept = put(u"kept"_s), gone = put(u"gone"_s), other = put(u"other"_s);
    QFile::remove(gone->path());
    QFile::remove(other->path());
    rows().actions().open({kept, gone, other});
    EXPECT_EQ(std::exchange(opened, {}), QStringList{kept->path()});
    ASSERT_EQ(frontEnd.alerts.size(), 1U) << "one question for all";
    EXPECT_EQ(frontEnd.alerts.back().title, u"2 files are gone"_s);

    frontEnd.onConfirm = [](const app::Alert& alert) {
        return alert.defaultButton == u"Open Its Folder"_s;
    };
    rows().actions().reveal(*gone);
    EXPECT_EQ(frontEnd.alerts.back().title, u"“gone” is gone"_s);
    EXPECT_EQ(opened, QStringList{folder.path()});

    frontEnd.onConfirm = [](const app::Alert&) { return true; };
    rows().actions().open(*gone);
    const auto again = controller->downloads()[1];
    EXPECT_NE(again, gone);
    EXPECT_EQ(again->URL().absoluteString(), u"http://a.example/gone"_s);

    controller->queue().remove(*again);
    rows().actions().open(*gone);
    main.settle();
    EXPECT_EQ(controller->downloads().back()->URL().absoluteString(), u"http://a.example/gone"_s)
        << "a button of a notification outlasts the row";
}

/// Its record goes, and with it whatever was to come for its row.
TEST_F(RowsTest, RowThatIsTriedAgainDoesNotGoOnVanishing) {
    class Shown final : public app::VanishView {
    public:
        bool showsDownload(const DQDownload&) const override { return true; }
        void redrawDownload(DQDownload&) override {}
        void performVanishStepForObject(DQDownload&) override {}
    };
    frontEnd.vanishing = std::make_shared<Shown>();
    defaults.set(app::settings::autoClearLemons, true);
    defaults.set(settings::uselessAnimations, true);
    auto failed = one();
    end(*failed, DQDownloadStatusAborted);
    ASSERT_TRUE(rows().vanishing().isVanishing(*failed));
    controller->retry({failed});
    failed.reset();
    main.settle();
    ASSERT_EQ(controller->downloads().size(), 1U);
    EXPECT_FALSE(rows().vanishing().isVanishing(*controller->downloads().front()));
    main.advance(10);
    EXPECT_EQ(controller->downloads().size(), 1U);
}

TEST_F(RowsTest, AbsentVolumesAreToldOfInOneAlert) {
    QStringList told, sentences;
    QObject::connect(controller.get(), &app::DQMainController::volumesMissing, controller.get(),
                     [&](const QString& text) { told += text; });
    QObject::connect(controller.get(), &app::DQMainController::volumeMissing, controller.get(),
                     [&](const QString& sentence) { sentences += sentence; });
    const auto startAbsent = [&](int count) {
        for (int index = 0; index < count; ++index) {
            const auto download = one();
            download->setIntermediateDownloadTargetPath(
                u"/media/nobody/Disk/%1.orlop/a"_s.arg(index));
            download->userSettings().set(keys::responseURL, u"http://a.example/a"_s);
            download->startDownload();
            EXPECT_EQ(download->status(), DQDownloadStatusPaused);
        }
    };
    startAbsent(1);
    main.advance(0.9);
    startAbsent(1);
    main.advance(0.9);
    EXPECT_EQ(told, QStringList()) << "the burst goes on";
    main.advance(0.2);
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(sentences.size(), 2);
    EXPECT_TRUE(sentences[0].contains(u"/media/nobody/Disk"_s)) << qPrintable(sentences[0]);
    struct Case {
        int count;
        qsizetype lines;
        const char16_t* last;
    };
    for (const Case& test : {Case{10, 10, u"a"}, {11, 10, u"(1 more)"}, {12, 10, u"(2 more)"}}) {
        startAbsent(test.count);
        main.advance(1.1);
        const QStringList lines = told.last().section(u"\n\n"_s, 1).split(u'\n');
        EXPECT_EQ(lines.size(), test.lines) << test.count;
        EXPECT_EQ(lines.last(), QString::fromUtf16(test.last));
    }
}

TEST_F(RowsTest, VolumesThatAreBackAnswerOnceWhatStillWaits) {
    bool isThere = false;
    app::MissingVolumes volumes([&](const QString& volume) {
        EXPECT_EQ(volume, u"/media/nobody/Disk"_s);
        return isThere;
    });
    const auto waiting = one(), started = one(), removed = one();
    for (const auto& download : {waiting, started, removed}) {
        download->setIntermediateDownloadTargetPath(u"/media/nobody/Disk/a.orlop/a"_s);
        download->changeStatus(DQDownloadStatusPaused, engine::StatusCause::Paused);
        volumes.note(download);
    }
    volumes.note(waiting);
    EXPECT_TRUE(volumes.takeReturned().empty());
    isThere = true;
    started->addToQueue();
    removed->remove();
    EXPECT_EQ(volumes.takeReturned(), app::MissingVolumes::Downloads{waiting});
    EXPECT_TRUE(volumes.takeReturned().empty());
}

}  // namespace
