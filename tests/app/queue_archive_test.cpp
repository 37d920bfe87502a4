#include <sys/inotify.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <array>

#include "app/queue/archive_writer.h"
#include "app/queue/queue_archive.h"
#include "app/queue/restored_download.h"
#include "app/queue/state_filter.h"
#include "app/rows/rows.h"
#include "app/settings.h"
#include "core_fixture.h"
#include "engine/lifecycle/kept_aside.h"
#include "engine/settings.h"
#include "engine/workers/download_worker_prototype.h"
#include "platform/files/descriptor.h"

using namespace Qt::Literals::StringLiterals;
namespace keys = engine::keys;

namespace {

class QueueFile : public Core {
protected:
    void writeQueue(const QByteArray& data) {
        ASSERT_EQ(platform::writeFileAtomically(queuePath(), data), std::nullopt);
    }
    QVariantMap savedArchive(const QString& name) {
        for (const QVariant& element : savedQueue().toList()) {
            if (element.toMap().value(keys::url) == address(name)) {
                return element.toMap();
            }
        }
        return {};
    }
    /// As if its server had answered.
    void begin(const QString& name) {
        download(name)->userSettings().set(keys::responseURL, address(name));
        download(name)->setIntermediateDownloadTargetPath(partialFile(name));
    }
    QString partialFile(const QString& name) const {
        return engine::intermediateDownloadBasePath(environment) + u'/' + name;
    }
};

/// What was paused must not run after a kill.
TEST_F(QueueFile, IsSavedWhenRowsArePausedOrMoved) {
    add({u"a"_s, u"b"_s, u"c"_s});
    ASSERT_EQ(savedArchive(u"b"_s).value(keys::paused), false);
    download(u"b"_s)->togglePause();
    EXPECT_EQ(savedArchive(u"b"_s).value(keys::paused), true);
    download(u"b"_s)->togglePause();
    EXPECT_EQ(savedArchive(u"b"_s).value(keys::paused), false);
    controller->dropRows({download(u"c"_s)}, 0);
    EXPECT_EQ(savedURLs(), QStringList({address(u"c"_s), address(u"a"_s), address(u"b"_s)}));
    controller->rearrange(-1);
    EXPECT_EQ(savedURLs(), QStringList({address(u"b"_s), address(u"a"_s), address(u"c"_s)}));
}

TEST_F(QueueFile, ComesBackAsItWas) {
    add({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    download(u"a"_s)->pause();
    begin(u"b"_s);
    download(u"b"_s)->setName(u"ä <&> name.zip"_s);
    const QDateTime added = download(u"b"_s)->date();
    end(*download(u"c"_s), engine::DQDownloadStatusAborted);
    EXPECT_EQ(savedArchive(u"b"_s).value(keys::resumePath), partialFile(u"b"_s));
    EXPECT_EQ(savedArchive(u"b"_s).value(keys::paused), false);

    restart();
    EXPECT_EQ(queue(), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
    EXPECT_EQ(download(u"a"_s)->status(), engine::DQDownloadStatusPaused);
    EXPECT_EQ(download(u"b"_s)->status(), engine::DQDownloadStatusQueued);
    EXPECT_EQ(download(u"b"_s)->name(), u"ä <&> name.zip"_s);
    EXPECT_EQ(download(u"b"_s)->intermediateDownloadTargetPath(), partialFile(u"b"_s));
    EXPECT_EQ(download(u"b"_s)->date(), added);
    EXPECT_EQ(download(u"c"_s)->status(), engine::DQDownloadStatusPaused) << "failed no longer";

    defaults.set(app::settings::autoStart, false);
    restart();
    EXPECT_EQ(download(u"b"_s)->status(), engine::DQDownloadStatusPaused);
}

TEST_F(QueueFile, RowsSayWhyTheyFailedInAnEarlierRun) {
    add({u"a"_s, u"b"_s, u"c"_s});
    download(u"c"_s)->pause();
    download(u"a"_s)->userSettings().set(engine::keys::statusCode, 404);
    end(*download(u"a"_s), engine::DQDownloadStatusAborted);
    begin(u"b"_s);
    const platform::Error full = platform::posixError(ENOSPC);
    download(u"b"_s)->interruptUntilResumed(
        engine::makeWorkerError(engine::WorkerErrorCode::CannotWrite, u"x"_s, &full));
    const auto text = [this](const QString& name) {
        return controller->rows().texts().statusDescriptionWithLiveDetails(*download(name), true);
    };
    const QStringList before{text(u"a"_s), text(u"b"_s)};
    ASSERT_TRUE(before.first().contains(u"404"_s)) << before.first().toStdString();
    // Twice, for nothing has been tried in between.
    restart();
    restart();
    EXPECT_EQ(download(u"a"_s)->status(), engine::DQDownloadStatusPaused) << "as it always was";
    EXPECT_EQ(QStringList({text(u"a"_s), text(u"b"_s)}), before);
    EXPECT_TRUE(download(u"a"_s)->wasGivenUp());
    EXPECT_FALSE(download(u"b"_s)->wasGivenUp());
    EXPECT_EQ(app::rowState(*download(u"a"_s)), app::RowState::Failed);
    EXPECT_FALSE(download(u"c"_s)->isInterrupted());

    controller->writeArchiveBeforeQuitting(false);
    EXPECT_TRUE(savedArchive(u"b"_s).contains(keys::failure));
    download(u"b"_s)->addToQueue();
    download(u"b"_s)->pause();
    controller->writeArchiveBeforeQuitting(false);
    EXPECT_FALSE(savedArchive(u"b"_s).contains(keys::failure));

    download(u"a"_s)->addToQueue();
    EXPECT_EQ(app::rowState(*download(u"a"_s)), app::RowState::Waiting);
    download(u"a"_s)->pause();
    restart();
    EXPECT_FALSE(download(u"a"_s)->isInterrupted());
}

/// A kill right behind a quit must not leave paused what was to go on.
TEST_F(QueueFile, IsWrittenOnceByAQuit) {
    defaults.set(app::settings::quitProcedure, qint64{1});
    QStringList names;
    for (int number = 0; number < 50; ++number) {
        names.append(QString::number(number));
    }
    add(names);
    ASSERT_EQ(savedURLs().size(), names.size());
    main.advance(60);  // The file has rested.
    const platform::Descriptor watch(inotify_init1(IN_NONBLOCK));
    const QByteArray place = QFile::encodeName(QFileInfo(queuePath()).path());
    ASSERT_GE(inotify_add_watch(watch.get(), place.constData(), IN_MOVED_TO), 0);
    ASSERT_TRUE(controller->writeArchiveBeforeQuitting(true));
    stop();
    std::array<char, 4096> events{};
    const auto length = read(watch.get(), events.data(), events.size());
    int writings = 0;
    for (ssize_t at = 0; at < length;) {
        const auto* event = reinterpret_cast<const inotify_event*>(&events.at(std::size_t(at)));
        writings += QFile::decodeName(event->name) == QFileInfo(queuePath()).fileName() ? 1 : 0;
        at += ssize_t(sizeof(inotify_event) + event->len);
    }
    EXPECT_EQ(writings, 1);
    start();
    EXPECT_EQ(savedArchive(u"7"_s).value(keys::paused), false);
}

TEST_F(QueueFile, SavesChangesThatAnEarlierSavingDidNotKnow) {
    add({u"a"_s, u"b"_s});
    EXPECT_FALSE(savedArchive(u"a"_s).contains(keys::downloadFolder));
    download(u"a"_s)->userSettings().set(keys::downloadFolder, u"~/x"_s);
    download(u"b"_s)->pause();
    controller->writeArchiveBeforeQuitting(false);
    EXPECT_EQ(savedArchive(u"a"_s).value(keys::downloadFolder), u"~/x"_s);
    EXPECT_EQ(savedArchive(u"b"_s).value(keys::paused), true);
    download(u"a"_s)->userSettings().remove(keys::downloadFolder);
    controller->writeArchiveBeforeQuitting(false);
    EXPECT_FALSE(savedArchive(u"a"_s).contains(keys::downloadFolder));
}

TEST_F(QueueFile, WritesTheMetadataOfABundleOnceForEachChange) {
    add({u"a"_s});
    const QString bundle = folder.filePath(u"a.orlop"_s);
    const QString metadata = bundle + u"/Archive.orlopinfo"_s;
    ASSERT_TRUE(QDir().mkpath(bundle));
    download(u"a"_s)->setIntermediateDownloadTargetPath(bundle + u"/a"_s);
    download(u"a"_s)->userSettings().set(keys::responseURL, address(u"a"_s));
    download(u"a"_s)->userSettings().set(keys::statusCode, 206);
    const auto saveAndTake = [&] {
        controller->writeArchiveBeforeQuitting(false);
        controller->finishWriting();
        disks.waitForDone();
        const platform::FileContents contents = platform::readFile(metadata, 1 << 20);
        QFile::remove(metadata);
        return platform::readPropertyList(contents.data).value.toMap();
    };
    const QVariantMap first = saveAndTake();
    EXPECT_EQ(first.value(keys::url), address(u"a"_s));
    EXPECT_FALSE(first.contains(keys::statusCode));
    EXPECT_TRUE(saveAndTake().isEmpty()) << "nothing had changed";
    download(u"a"_s)->setName(u"b"_s);
    EXPECT_EQ(saveAndTake().value(keys::name), u"b"_s);
}

TEST_F(QueueFile, KeepsAFileAsideThatItCannotUnderstand) {
    QString keptPath;
    QObject::connect(controller.get(), &app::DQMainController::queueFileDamaged, controller.get(),
                     [&](const QString& path) { keptPath = path; });
    const QString partial = engine::intermediateDownloadBasePath(environment) + u"/partial"_s;
    ASSERT_EQ(platform::writeFileAtomically(partial, "x"), std::nullopt);
    for (const QByteArray& damaged :
         {QByteArray("<?xml version=\"1.0\"?><plist><array>"), QByteArray(), QByteArray("\0\0", 2),
          platform::writePropertyList(QVariantMap{{u"URL"_s, u"x"_s}})}) {
        writeQueue(damaged);
        keptPath.clear();
        controller->readQueue();
        EXPECT_EQ(platform::readFile(keptPath, 1 << 20).data, damaged);
        EXPECT_FALSE(QFile::exists(queuePath()));
        EXPECT_EQ(controller->numberOfDownloads(), 0);
    }
    EXPECT_TRUE(controller->shouldQuit());
    EXPECT_TRUE(QFile::exists(partial)) << "what the kept file refers to";
}

TEST_F(QueueFile, LeavesAloneWhatItCannotRead) {
    int told = 0;
    QObject::connect(controller.get(), &app::DQMainController::queueFileDamaged, controller.get(),
                     [&](const QString& path) { told += path.isEmpty() ? 1 : 0; });
    // To be without descriptors would do as well, but the sanitizers need some themselves.
    ASSERT_TRUE(QFile::link(queuePath(), queuePath()));
    controller->readQueue();
    EXPECT_EQ(told, 1);
    add({u"b"_s});
    frontEnd.onConfirm = [](const auto&) { return true; };
    EXPECT_TRUE(controller->shouldQuit());
    EXPECT_TRUE(QFileInfo(queuePath()).isSymLink());
}

/// Killed after the first bytes had come, before the file told of them.
TEST_F(QueueFile, FindsTheContainerOfADownloadOfWhichItSaysNothing) {
    const QString downloads = folder.filePath(u"downloads"_s);
    defaults.set(engine::settings::downloadsFolder, downloads);
    add({u"a"_s, u"b"_s, u"c"_s});
    // It had begun anew, and was saved between its data and the next.
    download(u"c"_s)->userSettings().set(keys::responseURL, address(u"c"_s));
    for (const QString& name : {u"a"_s, u"b"_s, u"c"_s}) {
        const QString container = downloads + u'/' + name + u".orlop"_s;
        QVariantMap archive = savedArchive(name);
        archive[keys::responseURL] = address(name);
        archive[keys::resumePath] = container + u"/x"_s;
        archive[keys::paused] = true;
        if (name == u"b"_s) {
            archive[keys::date] = savedArchive(u"a"_s).value(keys::date).toByteArray() + 'x';
        }
        ASSERT_TRUE(QDir().mkpath(container));
        ASSERT_EQ(platform::writeFileAtomically(container + u"/Archive.orlopinfo"_s,
                                                platform::writePropertyList(archive)),
                  std::nullopt);
    }
    restart();
    EXPECT_EQ(download(u"a"_s)->intermediateDownloadTargetPath(), downloads + u"/a.orlop/x"_s);
    EXPECT_EQ(download(u"a"_s)->status(), engine::DQDownloadStatusQueued);
    EXPECT_EQ(download(u"b"_s)->intermediateDownloadTargetPath(), QString());
    EXPECT_EQ(download(u"c"_s)->intermediateDownloadTargetPath(), downloads + u"/c.orlop/x"_s);
}

/// Data that waits beside its successor is no forgotten bundle, and no bundle may name it: what is
/// aside is deleted in the end.
TEST_F(QueueFile, KnowsTheContainerThatIsAsideAndBelievesNoBundle) {
    const QString downloads = folder.filePath(u"downloads"_s);
    defaults.set(engine::settings::downloadsFolder, downloads);
    const QString aside = downloads + u"/a.orlop"_s;
    const QString victim = downloads + u"/b.orlop/b"_s;
    ASSERT_TRUE(QDir().mkpath(aside));
    ASSERT_TRUE(QDir().mkpath(QFileInfo(victim).path()));
    for (const QString& path : {aside + u"/a"_s, victim})
        ASSERT_EQ(platform::writeFileAtomically(path, "part"), std::nullopt);
    add({u"a"_s});
    const auto asideOf = [](const QString& path) { return QVariantMap{{keys::resumePath, path}}; };
    QVariantMap archive = savedArchive(u"a"_s);
    ASSERT_EQ(platform::writeFileAtomically(aside + u"/Archive.orlopinfo"_s,
                                            platform::writePropertyList(archive)),
              std::nullopt);
    download(u"a"_s)->userSettings().set(keys::responseURL, address(u"a"_s));
    download(u"a"_s)->userSettings().set(keys::keptAside, asideOf(aside + u"/a"_s));
    controller->writeArchiveBeforeQuitting(false);
    savedQueue();
    restart();
    EXPECT_EQ(controller->numberOfDownloads(), 1);
    EXPECT_EQ(engine::partialPathAside(*download(u"a"_s)), aside + u"/a"_s);

    archive[keys::url] = address(u"c"_s);
    archive[keys::keptAside] = asideOf(victim);
    archive[keys::responseURL] = address(u"c"_s);
    archive[keys::resumePath] = victim;
    const auto foreign = controller->addDownloadFromArchive(archive, downloads + u"/c.orlop"_s);
    EXPECT_EQ(engine::partialPathAside(*foreign), QString());
    EXPECT_EQ(foreign->intermediateDownloadTargetPath(), QString());
    for (const auto& each : Downloads(controller->downloads()))
        each->remove();
    disks.waitForDone();
    EXPECT_FALSE(QFile::exists(aside));
    EXPECT_TRUE(QFile::exists(victim));
}

/// Killed before the queue's file had its address, or after the file was lost.
TEST_F(QueueFile, TakesInTheContainersThatNobodyKnows) {
    const QString downloads = folder.filePath(u"downloads"_s);
    defaults.set(engine::settings::downloadsFolder, downloads);
    add({u"a"_s});
    struct Case {
        QString name;
        QByteArray data;
        bool isKnown, isLeft;
    };
    const Case cases[] = {{u"a"_s, "part", true, true},
                          {u"begun"_s, "part", false, true},
                          {u"empty"_s, "", false, false}};
    const auto write = [](const QString& path, const QByteArray& data) {
        ASSERT_EQ(platform::writeFileAtomically(path, data), std::nullopt);
    };
    const auto containerOf = [&](const QString& name) {
        return downloads + u'/' + name + u".orlop"_s;
    };
    for (const Case& c : cases) {
        const QString container = containerOf(c.name);
        ASSERT_TRUE(QDir().mkpath(container));
        QVariantMap archive = savedArchive(u"a"_s);
        if (!c.isKnown) {
            archive[keys::url] = address(c.name);
        }
        archive[keys::responseURL] = address(c.name);
        archive[keys::resumePath] = container + u"/x"_s;
        write(container + u"/x"_s, c.data);
        write(container + u"/Archive.orlopinfo"_s, platform::writePropertyList(archive));
    }
    ASSERT_TRUE(QDir().mkpath(containerOf(u"bare"_s)));
    ASSERT_TRUE(QDir().mkpath(containerOf(u"foreign"_s)));
    write(containerOf(u"foreign"_s) + u"/notes.txt"_s, "mine");
    for (int start = 0; start < 2; ++start) {
        restart();
        EXPECT_EQ(queue(), QStringList({u"a"_s, u"begun"_s}));
        for (const Case& c : cases) {
            EXPECT_EQ(QFile::exists(containerOf(c.name)), c.isLeft) << c.name.toStdString();
        }
        EXPECT_EQ(download(u"begun"_s)->intermediateDownloadTargetPath(),
                  containerOf(u"begun"_s) + u"/x"_s);
    }
    EXPECT_FALSE(QFile::exists(containerOf(u"bare"_s)));
    EXPECT_TRUE(QFile::exists(containerOf(u"foreign"_s) + u"/notes.txt"_s));
}

TEST_F(QueueFile, SkipsElementsWithoutAnAddress) {
    writeQueue(platform::writePropertyList(QVariantList{
        QVariantMap{{keys::paused, false}}, u"text"_s, QVariantMap{{keys::url, 7}},
        QVariantMap{{keys::url, address(u"a"_s)}}, QVariantMap{{keys::url, u"not a url"_s}}}));
    controller->readQueue();
    EXPECT_EQ(queue(), QStringList{u"a"_s});
}

TEST_F(QueueFile, QuitsWithAndWithoutAQuestion) {
    add({u"a"_s, u"b"_s});
    frontEnd.onConfirm = [](const app::Alert& alert) {
        EXPECT_EQ(alert.kind, app::Alert::Kind::QuitWhileDownloading);
        return false;
    };
    EXPECT_EQ(savedURLs().size(), 2);
    QFile::remove(queuePath());
    EXPECT_FALSE(controller->shouldQuit());
    EXPECT_FALSE(QFile::exists(queuePath()));
    EXPECT_EQ(download(u"a"_s)->status(), engine::DQDownloadStatusQueued);
    EXPECT_EQ(frontEnd.alerts.size(), 1u);

    // What ends while the question is up is looked at again.
    frontEnd.onConfirm = [&](const app::Alert&) {
        end(*download(u"a"_s), engine::DQDownloadStatusDone);
        return true;
    };
    EXPECT_TRUE(controller->shouldQuit());
    EXPECT_EQ(frontEnd.alerts.size(), 2u) << "asked once for all";
    EXPECT_EQ(savedURLs(), QStringList{address(u"b"_s)});
    EXPECT_EQ(savedArchive(u"b"_s).value(keys::paused), false) << "it goes on at the next launch";
    EXPECT_EQ(download(u"b"_s)->status(), engine::DQDownloadStatusPaused);
    add({u"c"_s});
    EXPECT_EQ(savedArchive(u"b"_s).value(keys::paused), false) << "whatever is saved after that";

    download(u"b"_s)->addToQueue();
    static_cast<void>(savedQueue());
    download(u"b"_s)->pause();
    EXPECT_EQ(savedArchive(u"b"_s).value(keys::paused), true) << "the user's own";
    download(u"b"_s)->addToQueue();
    defaults.set(app::settings::quitProcedure, qint64{1});
    EXPECT_TRUE(controller->shouldQuit());
    EXPECT_EQ(frontEnd.alerts.size(), 2u);
}

TEST_F(QueueFile, DropsEarlierInactiveTwinsAtQuitOnly) {
    for (int i = 0; i < 3; ++i) {
        controller->openURLs({*platform::Url::parse(address(u"a"_s))});
        end(*controller->downloads().back(), engine::DQDownloadStatusAborted);
    }
    controller->openURLs({*platform::Url::parse(address(u"b"_s))});
    begin(u"b"_s);
    controller->openURLs({*platform::Url::parse(address(u"b"_s))});
    defaults.set(app::settings::quitProcedure, qint64{1});
    defaults.set(app::settings::removeInactiveDuplicatesOnQuit, true);
    controller->writeArchiveBeforeQuitting(false);
    EXPECT_EQ(savedURLs().size(), 5);
    EXPECT_TRUE(controller->shouldQuit());
    EXPECT_EQ(savedURLs(), QStringList({address(u"a"_s), address(u"b"_s), address(u"b"_s)}))
        << "one that has begun is never dropped";
}

TEST_F(QueueFile, SaysThatItCannotBeWritten) {
    QString reason;
    QObject::connect(controller.get(), &app::DQMainController::queueFileNotWritten,
                     controller.get(), [&](const QString& text) { reason = text; });
    ASSERT_TRUE(QDir().mkpath(queuePath() + u"/in the way"_s));
    add({u"a"_s});
    EXPECT_TRUE(main.waitUntil([&] { return !reason.isEmpty(); }));
    EXPECT_EQ(reason, u"A folder lies in its place."_s);
    EXPECT_EQ(controller->numberOfDownloads(), 1);
}

TEST(MigratedArchive, FollowsABundleThatWasMoved) {
    const QTemporaryDir folder;
    const QString moved = folder.filePath(u"new/x.orlop"_s);
    ASSERT_TRUE(QDir().mkpath(moved));
    ASSERT_EQ(platform::writeFileAtomically(moved + u"/x"_s, "data"), std::nullopt);
    const QVariantMap archive{{keys::url, u"http://a.example/x"_s},
                              {keys::resumePath, u"/old/x.orlop/x"_s},
                              {keys::downloadFolder, u"/old"_s},
                              {keys::downloadFile, u"/old/final.zip"_s}};
    const QVariantMap migrated = app::migratedArchive(archive, moved);
    EXPECT_EQ(migrated.value(keys::resumePath), moved + u"/x"_s);
    EXPECT_EQ(migrated.value(keys::downloadFolder), folder.filePath(u"new"_s));
    EXPECT_EQ(migrated.value(keys::downloadFile), folder.filePath(u"new/final.zip"_s));

    // Elsewhere from the start, at its old place, without its file, and with a tilde.
    QVariantMap other = archive;
    other[keys::downloadFolder] = u"/elsewhere"_s;
    other[keys::downloadFile] = u"~/old/final.zip"_s;
    const QVariantMap kept = app::migratedArchive(other, moved);
    EXPECT_EQ(kept.value(keys::downloadFolder), u"/elsewhere"_s);
    EXPECT_EQ(kept.value(keys::downloadFile), u"~/old/final.zip"_s);
    other[keys::resumePath] = moved + u"/x"_s;
    EXPECT_EQ(app::migratedArchive(other, moved), other);
    EXPECT_EQ(app::migratedArchive(archive, folder.filePath(u"gone.orlop"_s)), archive);
    EXPECT_EQ(app::migratedArchive(archive, {}), archive);
}

/// Each look at it takes a millisecond.
class LaboriousClock final : public platform::Clock {
public:
    [[nodiscard]] platform::Seconds monotonic() const override { return now_ += 0.001; }
    [[nodiscard]] platform::Seconds wall() const override { return 0; }
    [[nodiscard]] platform::Seconds sleepUntil(platform::Seconds) const override { return 0; }
    int addWaker(std::function<void()>) override { return 0; }
    void removeWaker(int) override {}

private:
    mutable platform::Seconds now_ = 1;
};

TEST_F(QueueFile, IsPutTogetherALittleAtATimeWhereItIsLong) {
    add(numbered(30));
    LaboriousClock clock;
    platform::RunLoop loop(clock);
    const QString path = folder.filePath(u"Long.plist"_s);
    app::QueueArchive archive(path, {controller->queue(),
                                     defaults,
                                     loop,
                                     frontEnd,
                                     [](const engine::DQDownload&) { return false; },
                                     [] { return QVariantList(); },
                                     {},
                                     {},
                                     {}});
    archive.write();
    int turns = 0;
    for (; turns < 100 && !QFile::exists(path); ++turns) {
        loop.runDue();
        disks.waitForDone();
    }
    EXPECT_GT(turns, 4) << "no turn takes longer than a few rows";
    EXPECT_EQ(
        platform::readPropertyList(platform::readFile(path, 1 << 20).data).value.toList().size(),
        30);
}

TEST(ArchiveWriter, WritesTheLatestOfManyAndFinishesBeforeItGoes) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Orlop/Queue.plist"_s);
    const auto written = [&path] {
        return platform::readPropertyList(platform::readFile(path, 1 << 20).data)
            .value.toList()
            .value(0)
            .toInt();
    };
    support::MainLoop main;
    platform::Disks disks(main.loop);
    int reports = 0;
    {
        app::ArchiveWriter writer(path, disks, main.loop, [&](const auto& error) {
            EXPECT_FALSE(error);
            ++reports;
        });
        for (int number = 0; number <= 300; ++number) {
            writer.write(app::ArchiveWriter::Elements{platform::propertyListElement(number)});
        }
        EXPECT_FALSE(writer.finish());
        EXPECT_FALSE(writer.isBusy());
        EXPECT_EQ(written(), 300);
        main.settle();
        EXPECT_GE(reports, 1);
        EXPECT_LT(reports, 300) << "every list was written, though newer ones waited";
        ASSERT_TRUE(QDir(folder.filePath(u"Orlop"_s)).removeRecursively());
        writer.write(app::ArchiveWriter::Elements{platform::propertyListElement(7)});
    }
    EXPECT_EQ(written(), 7);
    main.settle();
    EXPECT_LT(reports, 300);
}

}  // namespace
