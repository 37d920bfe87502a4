
#include <QDir>

#include "app/intake/address_list.h"
#include "app/intake/file_collector.h"
#include "app/intake/pasteboard.h"
#include "app/intake/script_arguments.h"
#include "app/intake/text_preview.h"
#include "app/intake/url_handler_command.h"
#include "app/settings.h"
#include "core_fixture.h"
#include "engine/settings.h"

using namespace Qt::Literals::StringLiterals;
using app::Downloads;
namespace keys = engine::keys;

namespace {

class IntakeTest : public Core {
protected:
    void downloadTo(const QString& path) {
        QDir().mkpath(path);
        defaults.setFolderPath(engine::settings::downloadsFolder.name(), path);
    }
    QString writeFile(const QString& name, const QByteArray& data) {
        const QString path = folder.filePath(name);
        QDir().mkpath(QFileInfo(path).absolutePath());
        EXPECT_EQ(platform::writeFileAtomically(path, data), std::nullopt);
        return path;
    }
    static platform::Url url(const QString& text) { return *platform::Url::parse(text); }
    void openPath(const QString& path) {
        controller->openURLs({platform::Url::fromFilePath(path)});
    }
    engine::UserSettings& settingsOf(const QString& name) { return download(name)->userSettings(); }
    QStringList addresses() const {
        QStringList strings;
        for (const auto& element : controller->downloads()) {
            strings.append(element->URLString());
        }
        return strings;
    }
};

TEST_F(IntakeTest, FindsAddressesInText) {
    const QString text =
        u" http://a.example/1 \n \n\t<a href=\"http://a.example/2\">x</a>\n"
        "http://a.example/{03-04}.zip\nhttp://a.example/a b\u00e4\nhttp://a.example/1"_s;
    QStringList found;
    for (const platform::Url& address : controller->URLsFromString(text)) {
        found.append(address.absoluteString());
    }
    EXPECT_EQ(found, QStringList({u"http://a.example/1"_s, u"http://a.example/2"_s,
                                  u"http://a.example/03.zip"_s, u"http://a.example/04.zip"_s,
                                  u"http://a.example/a%20b%C3%A4"_s, u"http://a.example/1"_s}));
}

TEST_F(IntakeTest, SkipsWhatTheQueueHas) {
    add({u"a"_s});
    const auto count = [&](const QString& name) {
        return controller->URLsFromString(address(name)).size();
    };
    EXPECT_EQ(count(u"a"_s), 0u);
    EXPECT_EQ(controller->URLsFromString(address(u"a"_s) + u"?"_s).size(), 1u);
    end(*download(u"a"_s), engine::DQDownloadStatusAborted);
    EXPECT_EQ(count(u"a"_s), 0u) << "a failed one blocks its address";
    controller->downloads()[0]->setURL(platform::Url::fromFilePath(u"/tmp/a"_s));
    EXPECT_EQ(count(u"a"_s), 1u) << "a finished one does not";
    controller->downloads()[0]->setURL(url(address(u"a"_s)));
    defaults.set(app::settings::instantDuplicateCheck, false);
    EXPECT_EQ(count(u"a"_s), 1u);
}

TEST_F(IntakeTest, AnnouncesWhatWasAdded) {
    frontEnd.springs = true;
    add({u"a"_s, u"b"_s});
    EXPECT_EQ(frontEnd.moves, QStringList{u"spring"_s}) << "the first rows";
    EXPECT_EQ(reporter.events, QStringList{u"Added to Queue: a\nb"_s});
    EXPECT_EQ(savedURLs().size(), 2);
    add({u"c"_s});
    EXPECT_EQ(frontEnd.moves.size(), 1);
    add({u"c"_s});
    EXPECT_EQ(reporter.events.size(), 2) << "nothing was added";
    defaults.set(app::settings::autoStart, false);
    add({u"d"_s});
    EXPECT_EQ(download(u"d"_s)->status(), engine::DQDownloadStatusPaused);
}

TEST_F(IntakeTest, TakesArgumentsOfScripts) {
    const QString target = folder.filePath(u"new/first.zip"_s);
    controller->openURLs({url(address(u"a"_s)), url(address(u"b"_s)), url(address(u"c"_s))},
                         app::scriptArgumentsFromDictionary({{u"toPosixPath"_s, target},
                                                             {u"byPostingData"_s, u"x=1"_s},
                                                             {u"withReferrer"_s, u"http://r/"_s},
                                                             {u"usingCookies"_s, u"k=v"_s}}));
    EXPECT_EQ(settingsOf(u"a"_s).string(keys::downloadFile), target);
    EXPECT_EQ(settingsOf(u"b"_s).string(keys::downloadFolder), folder.filePath(u"new"_s));
    EXPECT_EQ(settingsOf(u"c"_s).string(keys::downloadFolder), folder.filePath(u"new"_s));
    const QVariantMap request = settingsOf(u"c"_s).value(keys::request).toMap();
    EXPECT_EQ(request.value(u"DQOBPRequestMethod"_s), u"POST"_s);
    EXPECT_EQ(request.value(u"DQOBPRequestBody"_s), QByteArray("x=1"));
    EXPECT_EQ(request.value(u"DQOBPRequestPartialHeaderFieds"_s),
              QVariant(QVariantMap{{u"Content-Type"_s, u"application/x-www-form-urlencoded"_s},
                                   {u"Referer"_s, u"http://r/"_s},
                                   {u"Cookie"_s, u"k=v"_s}}));

    const auto requestOf = [](const QVariantMap& dictionary) {
        return app::scriptArgumentsFromDictionary(dictionary).request();
    };
    EXPECT_TRUE(requestOf({{u"byPostingData"_s, u"ä"_s}}).isEmpty()) << "only ASCII can be posted";
    EXPECT_TRUE(requestOf({{u"withReferrer"_s, 7}}).isEmpty());
    controller->openURLs({url(address(u"d"_s))}, {folder.path(), {}, {}, {}, {}});
    EXPECT_EQ(settingsOf(u"d"_s).string(keys::downloadFolder), folder.path());
    EXPECT_FALSE(settingsOf(u"d"_s).contains(keys::request));
}

TEST_F(IntakeTest, AsksForOneFolderOrTheFileOfASingleDownload) {
    frontEnd.holdsModifiers = true;
    frontEnd.folders = {u"~/x"_s};
    add({u"a"_s, u"b"_s});
    EXPECT_EQ(settingsOf(u"a"_s).string(keys::downloadFolder), u"~/x"_s);
    EXPECT_EQ(settingsOf(u"b"_s).string(keys::downloadFolder), u"~/x"_s);

    defaults.set(app::settings::folderPromptAllowsFilenameEditing, true);
    frontEnd.files = {u"~/y/name.zip"_s};
    add({u"c"_s});
    EXPECT_EQ(settingsOf(u"c"_s).string(keys::downloadFile), u"~/y/name.zip"_s);
    EXPECT_EQ(settingsOf(u"c"_s).string(keys::downloadFolder), u"~/y"_s);

    // A cancelled prompt ends the batch and takes the download in hand with it.
    reporter.events.clear();
    add({u"d"_s, u"e"_s});
    main.settle();
    EXPECT_EQ(queue(), QStringList({u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_TRUE(reporter.events.isEmpty());
}

TEST_F(IntakeTest, ACancelEndsTheListInHandOnly) {
    const QString list = writeFile(u"list.txt"_s, "http://a.example/a\nhttp://b.example/b\n");
    frontEnd.holdsModifiers = true;
    frontEnd.folders = {std::nullopt, u"~/x"_s};
    controller->openURLs({platform::Url::fromFilePath(list), url(address(u"c"_s))});
    main.settle();
    EXPECT_EQ(queue(), QStringList{u"c"_s});
}

TEST_F(IntakeTest, ACancelTakesTheRowFromAListThatHasShownIt) {
    frontEnd.holdsModifiers = true;
    frontEnd.folders = {std::nullopt};
    int reloads = 0;
    frontEnd.whileAsked = [&] {
        controller->updateDownloadListAndStatus();
        reloads = frontEnd.reloads;
    };
    add({u"a"_s});
    main.settle();
    EXPECT_TRUE(queue().isEmpty());
    EXPECT_GT(frontEnd.reloads, reloads);
}

TEST_F(IntakeTest, ReadsListsOnceThoughTheyNameThemselves) {
    const QString path = folder.filePath(u"list.txt"_s);
    const QByteArray self = platform::Url::fromFilePath(path).absoluteString().toUtf8();
    const QByteArray again = QByteArray(self).replace("/list.txt", "/./list.txt");
    writeFile(u"list.txt"_s,
              "http://a.example/a\n" + self + "\r\n # note\r\n" + again + "\nhttp://b.example/b");
    openPath(path);
    EXPECT_EQ(queue(), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(reporter.events, QStringList{u"Added to Queue: a\nb"_s});
    openPath(folder.filePath(u"missing.txt"_s));
    EXPECT_EQ(queue().size(), 2);
}

TEST_F(IntakeTest, ListsMayBeInAnyUsualCharset) {
    const std::vector<std::pair<QByteArray, QString>> cases{
        {"# \xC3\xA4\rhttp://a/\xC3\xA4\r", u"http://a/ä\r"_s},
        {QByteArray("\xFF\xFEh\0\n\0\xE4\0", 8), u"h\nä"_s},
        {"http://a/\x80\xE4", u"http://a/€ä"_s},
        {"#", u""_s},
    };
    for (const auto& [data, text] : cases) {
        EXPECT_EQ(app::addressListText(data), text) << data.toStdString();
    }
}

TEST_F(IntakeTest, TakesRequestsOfBrowsers) {
    const QString target = folder.filePath(u"Downloads/y.zip"_s);
    downloadTo(folder.filePath(u"Downloads"_s));
    const QVariantMap request{{u"DQOBPSourceURL"_s, address(u"a"_s)},
                              {u"DQOBPTargetPath"_s, target},
                              {u"DQOBPRequestMethod"_s, u"POST"_s},
                              {u"Unknown"_s, u"kept"_s}};
    const QString path = writeFile(u"x.OBP"_s, platform::writePropertyList(request));
    openPath(path);
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(settingsOf(u"a"_s).string(keys::downloadFile), platform::abbreviateWithTilde(target));
    EXPECT_EQ(settingsOf(u"a"_s).value(keys::request).toMap(),
              QVariantMap({{u"DQOBPRequestMethod"_s, u"POST"_s}, {u"Unknown"_s, u"kept"_s}}));

    // Without a usable address it is a file like any other.
    for (const QVariant& source : {QVariant(), QVariant(u"not a url"_s), QVariant(3)}) {
        QVariantMap broken = request;
        broken[u"DQOBPSourceURL"_s] = source;
        if (!source.isValid()) {
            broken.remove(u"DQOBPSourceURL"_s);
        }
        const QString file = writeFile(u"y.obp"_s, platform::writePropertyList(broken));
        openPath(file);
        EXPECT_TRUE(QFile::exists(file));
        EXPECT_EQ(addresses().back(), platform::Url::fromFilePath(file).absoluteString());
    }
}

TEST_F(IntakeTest, AsksBeforeAFileFromElsewhereChoosesItsTarget) {
    downloadTo(folder.filePath(u"Downloads"_s));
    const auto request = [&](const QString& name, const QString& target) {
        openPath(writeFile(u"x.obp"_s, platform::writePropertyList(
                                           QVariantMap{{u"DQOBPSourceURL"_s, address(name)},
                                                       {u"DQOBPTargetPath"_s, target}})));
        const QString chosen = settingsOf(name).string(keys::downloadFile);
        return platform::expandTilde(chosen);
    };
    const QString elsewhere = folder.filePath(u"Elsewhere/y.zip"_s);
    EXPECT_EQ(request(u"a"_s, elsewhere), QString());
    ASSERT_EQ(frontEnd.alerts.size(), 1U);
    EXPECT_TRUE(frontEnd.alerts[0].title.contains(u"x.obp"_s));
    EXPECT_TRUE(frontEnd.alerts[0].text.contains(platform::abbreviateWithTilde(elsewhere)));
    EXPECT_TRUE(frontEnd.alerts[0].isRisky);
    frontEnd.onConfirm = [](const app::Alert&) { return true; };
    EXPECT_EQ(request(u"b"_s, elsewhere), elsewhere);

    // The setting does not cover what would be run, nor does a folder of downloads.
    frontEnd.alerts.clear();
    frontEnd.onConfirm = [](const app::Alert&) { return false; };
    defaults.set(app::settings::targetsOutsideDownloadFolders, true);
    EXPECT_EQ(request(u"c"_s, elsewhere), elsewhere);
    EXPECT_TRUE(frontEnd.alerts.empty());
    ASSERT_TRUE(QFile::link(QDir::homePath(), folder.filePath(u"Downloads/home"_s)));
    const QStringList risky{u"~/.ssh/authorized_keys"_s,
                            u"~/.config/autostart/x"_s,
                            folder.filePath(u"Downloads/.hidden/x"_s),
                            folder.filePath(u"Downloads/../.bashrc"_s),
                            folder.filePath(u"Downloads/home/.profile"_s),
                            folder.filePath(u"Downloads/x.desktop"_s),
                            u"/usr/local/bin/x"_s,
                            u"/etc/cron.d/x"_s,
                            u"relative/x"_s};
    for (const QString& target : risky) {
        EXPECT_EQ(request(u"r%1"_s.arg(frontEnd.alerts.size()), target), QString())
            << target.toStdString();
    }
    EXPECT_EQ(frontEnd.alerts.size(), static_cast<std::size_t>(risky.size()));

    // Nobody is there: nothing is taken, and the file stays.
    frontEnd.isThere = false;
    const auto before = queue().size();
    const QString refused =
        writeFile(u"z.obp"_s,
                  platform::writePropertyList(QVariantMap{{u"DQOBPSourceURL"_s, address(u"z"_s)},
                                                          {u"DQOBPTargetPath"_s, u"~/.bashrc"_s}}));
    openPath(refused);
    EXPECT_EQ(queue().size(), before);
    EXPECT_TRUE(QFile::exists(refused));
}

TEST_F(IntakeTest, ABundleFromElsewhereChoosesNoTarget) {
    downloadTo(folder.filePath(u"Downloads"_s));
    const auto bundle = [&](const QString& name, const QString& key, const QString& target) {
        const QString path = folder.filePath(u"Downloads/%1.orlop"_s.arg(name));
        writeFile(u"Downloads/%1.orlop/%1"_s.arg(name), "part");
        writeFile(u"Downloads/%1.orlop/Archive.orlopinfo"_s.arg(name),
                  platform::writePropertyList(QVariantMap{{keys::url, address(name)},
                                                          {keys::paused, true},
                                                          {keys::date, name.toUtf8()},
                                                          {keys::responseURL, address(name)},
                                                          {keys::resumePath, path + u'/' + name},
                                                          {key, target}}));
        return path;
    };
    openPath(bundle(u"a"_s, keys::downloadFolder, u"~/.config/autostart"_s));
    EXPECT_EQ(frontEnd.alerts.size(), 1U);
    EXPECT_FALSE(settingsOf(u"a"_s).contains(keys::downloadFolder));
    openPath(bundle(u"b"_s, keys::downloadFile, folder.filePath(u"Downloads/b"_s)));
    EXPECT_EQ(frontEnd.alerts.size(), 1U);
    EXPECT_TRUE(settingsOf(u"b"_s).contains(keys::downloadFile));

    // One that lies in a download folder is taken in at the next start, without a question.
    bundle(u"c"_s, keys::downloadFile, u"~/.bashrc"_s);
    stop();
    start();
    controller->readQueue();
    EXPECT_EQ(frontEnd.alerts.size(), 1U);
    EXPECT_FALSE(settingsOf(u"c"_s).contains(keys::downloadFile));
}

TEST_F(IntakeTest, ResumesABundleOrRestoresIt) {
    const QString bundle = folder.filePath(u"a.orlop"_s);
    writeFile(u"a.orlop/Archive.orlopinfo"_s,
              platform::writePropertyList(QVariantMap{{keys::url, address(u"a"_s)},
                                                      {keys::paused, true},
                                                      {keys::responseURL, address(u"a"_s)},
                                                      {keys::resumePath, u"/old/a.orlop/a"_s}}));
    writeFile(u"a.orlop/a"_s, "part");
    openPath(bundle);
    ASSERT_EQ(queue(), QStringList{u"a"_s});
    EXPECT_EQ(download(u"a"_s)->status(), engine::DQDownloadStatusPaused);
    EXPECT_EQ(download(u"a"_s)->intermediateDownloadTargetPath(), bundle + u"/a"_s);

    reporter.events.clear();
    ASSERT_TRUE(QFile::link(bundle, folder.filePath(u"link.orlop"_s)));
    for (const QString& spelling : {bundle, bundle + u'/', folder.filePath(u"link.orlop"_s)}) {
        download(u"a"_s)->pause();
        openPath(spelling);
        EXPECT_EQ(queue().size(), 1);
        EXPECT_EQ(download(u"a"_s)->status(), engine::DQDownloadStatusQueued);
    }
    EXPECT_TRUE(controller->openFiles({bundle + u'/'}, true, false)) << "no folder to be walked";
    main.settle();
    EXPECT_EQ(queue().size(), 1);
    EXPECT_TRUE(reporter.events.isEmpty());

    openPath(folder.filePath(u"empty.orlop"_s));
    EXPECT_EQ(frontEnd.beeps, 1);
    EXPECT_EQ(queue().size(), 1);
}

TEST_F(IntakeTest, FollowsABundleThatWasMovedFromUnderItsRecord) {
    for (const auto status : {engine::DQDownloadStatusPaused, engine::DQDownloadStatusQueued,
                              engine::DQDownloadStatusAborted}) {
        SCOPED_TRACE(status);
        add({u"a"_s});
        const engine::DownloadPtr known = download(u"a"_s);
        const QString part = writeFile(u"here/a.orlop/a"_s, "part");
        known->userSettings().set(keys::responseURL, address(u"a"_s));
        known->setIntermediateDownloadTargetPath(part);
        writeFile(
            u"here/a.orlop/Archive.orlopinfo"_s,
            platform::writePropertyList(known->userSettingsArchiveWithPausedStatus(true, false)));
        known->pause();
        if (status == engine::DQDownloadStatusQueued) {
            known->addToQueue();
        } else if (status == engine::DQDownloadStatusAborted) {
            end(*known, status);
        }
        QDir().mkpath(folder.filePath(u"there"_s));
        const QString bundle = folder.filePath(u"there/a.orlop"_s);
        ASSERT_TRUE(QDir().rename(folder.filePath(u"here/a.orlop"_s), bundle));
        openPath(bundle);
        ASSERT_EQ(queue(), QStringList{u"a"_s});
        EXPECT_EQ(download(u"a"_s)->intermediateDownloadTargetPath(), bundle + u"/a"_s);
        EXPECT_EQ(download(u"a"_s)->status(), engine::DQDownloadStatusQueued);
        EXPECT_EQ(settingsOf(u"a"_s).string(keys::responseURL), address(u"a"_s));
        download(u"a"_s)->remove();
        main.advance(1);
        ASSERT_EQ(queue(), QStringList());
        ASSERT_TRUE(main.waitUntil([&] { return !platform::pathExists(bundle); }));
    }
}

TEST_F(IntakeTest, ComesForwardWhenABrowserAsksForNothingElse) {
    controller->openURLs({url(u"http://orlop"_s), url(u"http://orlop/"_s)});
    EXPECT_EQ(frontEnd.moves, QStringList{u"activate"_s});
    EXPECT_EQ(addresses(), QStringList{u"http://orlop/"_s});
}

TEST_F(IntakeTest, WalksFoldersAndAsksFromTheHundredthFileOn) {
    for (int i = 0; i < 102; ++i) {
        writeFile(u"tree/%1/f%1.zip"_s.arg(i), "x");
    }
    writeFile(u"tree/.hidden"_s, "x");
    writeFile(u"tree/b.orlop/Archive.orlopinfo"_s, "x");
    ASSERT_TRUE(QFile::link(folder.filePath(u"tree"_s), folder.filePath(u"tree/5/loop"_s)));
    const QStringList paths{folder.filePath(u"tree"_s)};

    app::FileCollector stopped(frontEnd, false);
    EXPECT_FALSE(stopped.getFileURLs(paths));
    EXPECT_EQ(stopped.urls().size(), 100u) << "what was found stays";
    EXPECT_TRUE(stopped.urls()[10].filePath().endsWith(u"/tree/10/f10.zip"_s)) << "natural order";
    EXPECT_EQ(frontEnd.alerts.size(), 1u);

    frontEnd.onConfirm = [](const app::Alert& alert) {
        return alert.title == u"100 files and counting..."_s;
    };
    app::FileCollector complete(frontEnd, true);
    EXPECT_TRUE(complete.getFileURLs(paths));
    EXPECT_EQ(complete.urls().size(), 103u) << "with the bundle";
    EXPECT_EQ(frontEnd.alerts.size(), 4u) << "asked for each one more";
}

TEST_F(IntakeTest, OpensFilesNowOrAfterTheCallerHasReturned) {
    const QString list = writeFile(u"list.txt"_s, "http://a.example/a");
    EXPECT_TRUE(controller->openFiles({list}, true, true));
    EXPECT_TRUE(queue().isEmpty());
    main.settle();
    EXPECT_EQ(queue(), QStringList{u"a"_s});
    EXPECT_FALSE(controller->openFiles({list}, false, false)) << "nothing new in it";
    defaults.set(engine::settings::storeMetadataLocally, false);
    EXPECT_FALSE(controller->openFiles({folder.filePath(u"x.orlop"_s)}, true, true));
}

TEST_F(IntakeTest, TakesDropsAndPastes) {
    const app::Pasteboard list{
        app::addressesFromUriList(u"# comment\r\nhttp://a.example/a\r\nhttp://b.example/b\r\n"_s),
        u"ignored"_s};
    EXPECT_TRUE(controller->canDropPasteboard(list));
    EXPECT_TRUE(controller->dropPasteboard(list));
    EXPECT_TRUE(queue().isEmpty()) << "the drag's source waits";
    main.settle();
    EXPECT_EQ(queue(), QStringList({u"a"_s, u"b"_s}));
    EXPECT_FALSE(controller->dropPasteboard({{}, u" \n"_s}));
    EXPECT_FALSE(controller->dropPasteboard({}));
    EXPECT_EQ(controller->URLsFromPasteboard({}), std::nullopt);

    writeFile(u"dropped/c.txt"_s, "http://c.example/c");
    EXPECT_TRUE(controller->dropPasteboard(
        {QStringList{platform::Url::fromFilePath(folder.filePath(u"dropped"_s)).absoluteString()},
         {}}));
    main.settle();
    EXPECT_EQ(queue().back(), u"c"_s) << "folders are walked";

    EXPECT_EQ(controller->openURLFromPasteboard({{}, u"http://d.example/d"_s}), std::nullopt);
    EXPECT_EQ(queue().back(), u"d"_s);
    EXPECT_EQ(controller->openURLFromPasteboard({{}, u"\n"_s}), u"\n"_s);
    EXPECT_EQ(queue().size(), 4);
}

TEST_F(IntakeTest, TakesTheAddressesOfATextAndShowsTheRestOnce) {
    std::vector<app::RefusedText> refused;
    int shown = 0;
    QObject::connect(controller.get(), &app::DQMainController::textNotUnderstood, controller.get(),
                     [&](const std::vector<app::RefusedText>& texts) {
                         refused = texts;
                         ++shown;
                     });
    const QString mail =
        u"Hi Anna,\n<https://a.example/a>\nwww.b.example/b\nmagnet:?xt=1\nhttp://h:port/"_s;
    const std::function<void()> entrances[] = {
        [&] { controller->openText(mail); },
        [&] {
            EXPECT_EQ(controller->openURLFromPasteboard({{}, mail}), std::nullopt);
        },
        [&] {
            EXPECT_TRUE(controller->dropPasteboard({{}, mail}));
            main.settle();
        },
        [&] {
            EXPECT_TRUE(controller->dropPasteboard({QStringList{mail}, {}}));
            main.settle();
        }};
    for (const auto& enter : entrances) {
        shown = 0;
        enter();
        EXPECT_EQ(addresses(), QStringList{u"https://a.example/a"_s});
        EXPECT_EQ(shown, 1);
        QStringList proposals;
        for (const app::RefusedText& text : refused) {
            proposals.append(text.proposal);
        }
        EXPECT_EQ(proposals, (QStringList{u"Hi Anna,"_s, u"https://www.b.example/b"_s,
                                          u"magnet:?xt=1"_s, u"http://h:port/"_s}));
        const QString why = app::refusalExplanation(refused);
        for (const QString& word :
             {u"got https"_s, u"no others"_s, u"no server"_s, u"no address"_s}) {
            EXPECT_TRUE(why.contains(word)) << qPrintable(why);
        }
        controller->downloads()[0]->remove();
        main.settle();
    }
}

TEST_F(IntakeTest, PointsToWhatTheQueueHasHoweverItIsWritten) {
    Downloads known;
    QObject::connect(controller.get(), &app::DQMainController::alreadyInList, controller.get(),
                     [&](const Downloads& downloads) { known = downloads; });
    const QString text = u"http://m\u00FCller.example/a b \u00E4.zip\nhttp://a.example/plain"_s;
    controller->openText(text);
    ASSERT_EQ(controller->numberOfDownloads(), 2);
    EXPECT_TRUE(known.empty());
    controller->openText(text + u"\n"_s + text + u"\nhttp://a.example/new"_s);
    EXPECT_EQ(controller->numberOfDownloads(), 3);
    EXPECT_EQ(known, Downloads({controller->downloads()[0], controller->downloads()[1]}));
    known.clear();
    controller->openNewURLs({url(u"http://a.example/plain"_s)});
    EXPECT_EQ(known.size(), 1u);
    controller->openURLs({url(u"http://a.example/plain"_s)});
    EXPECT_EQ(controller->numberOfDownloads(), 4) << "what a script asks for it gets";
}

TEST_F(IntakeTest, ADocumentIsNoListAndItsAddressesAreOffered) {
    writeFile(u"docs/notes.txt"_s,
              "Dear all,\nsee http://a.example/a and http://a.example/b.\nJo\n");
    writeFile(u"docs/licence.txt"_s, "All rights reserved.\nNo warranty.\n");
    writeFile(u"docs/list.txt"_s, "http://a.example/c\nhttp://a.example/d\n-- the end --\n");
    QStringList problems;
    QObject::connect(controller.get(), &app::DQMainController::filesNotOpened, controller.get(),
                     [&](const QStringList& texts) { problems = texts; });
    controller->openFiles({folder.filePath(u"docs"_s)}, false, false);
    EXPECT_EQ(queue(), QStringList({u"c"_s, u"d"_s}));
    ASSERT_EQ(frontEnd.alerts.size(), 1u);
    EXPECT_EQ(frontEnd.alerts[0].title, u"2 addresses in notes.txt."_s);
    ASSERT_EQ(problems.size(), 1);
    EXPECT_TRUE(problems[0].contains(u"licence.txt"_s));

    frontEnd.onConfirm = [](const app::Alert&) { return true; };
    controller->openFiles({folder.filePath(u"docs/notes.txt"_s)}, false, false);
    EXPECT_EQ(queue(), QStringList({u"c"_s, u"d"_s, u"a"_s, u"b"_s}));
}

TEST_F(IntakeTest, SaysPlainlyWhyAListCannotBeRead) {
    writeFile(u"long.txt"_s, "http://a.example/a\n");
    QFile list(folder.filePath(u"long.txt"_s));
    ASSERT_TRUE(list.resize(qint64{1} << 40));
    QStringList problems;
    QObject::connect(controller.get(), &app::DQMainController::filesNotOpened, controller.get(),
                     [&](const QStringList& texts) { problems = texts; });
    controller->openFiles({list.fileName()}, false, false);
    ASSERT_EQ(problems.size(), 1);
    EXPECT_TRUE(problems[0].endsWith(u"long.txt cannot be read: The file is too large."_s))
        << problems[0].toStdString();
}

TEST_F(IntakeTest, StreamsLongRangesWithoutHoldingTheLoop) {
    qsizetype progress = 0;
    int ends = 0;
    QObject::connect(controller.get(), &app::DQMainController::intakeProgressed, controller.get(),
                     [&](qsizetype count) { progress = count; });
    QObject::connect(controller.get(), &app::DQMainController::intakeEnded, controller.get(),
                     [&] { ++ends; });
    defaults.set(app::settings::autoStart, false);
    const app::Pasteboard series{QStringList{u"http://a.example/{1-999999999}{1-9999}{a-z}"_s}, {}};
    EXPECT_TRUE(controller->dropPasteboard(series));
    main.settle();
    ASSERT_EQ(frontEnd.alerts.size(), 1);
    EXPECT_EQ(frontEnd.alerts[0].title, u"This series stands for 259,973,999,740,026 addresses."_s);
    EXPECT_EQ(controller->numberOfDownloads(), 0);

    frontEnd.onConfirm = [](const app::Alert&) { return true; };
    EXPECT_TRUE(controller->dropPasteboard(series));
    while (progress < 12'000) {
        ASSERT_TRUE(main.loop.runDue());
    }
    EXPECT_EQ(ends, 0);
    controller->stopIntake();
    main.settle();
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(controller->numberOfDownloads(), progress);
    EXPECT_EQ(reporter.events.size(), 1);
    EXPECT_LT(frontEnd.reloads, 20) << "the list is shown ever more rarely";
}

TEST_F(IntakeTest, ShowsTheListOnceForManyThatAreToStart) {
    EXPECT_TRUE(controller->dropPasteboard({QStringList{u"http://a.example/{1-2000}"_s}, {}}));
    main.settle();
    EXPECT_EQ(controller->numberOfDownloads(), 2000);
    EXPECT_LT(frontEnd.reloads, 10);
}

TEST_F(IntakeTest, RetriesAtTheSamePlace) {
    add({u"a"_s, u"b"_s, u"c"_s});
    const engine::DownloadPtr old = download(u"b"_s);
    settingsOf(u"b"_s).set(keys::downloadFolder, u"~/x"_s);
    settingsOf(u"b"_s).set(keys::responseURL, address(u"mirror"_s));
    settingsOf(u"b"_s).set(keys::entityTag, u"tag"_s);
    const QString part = writeFile(u"b.orlop/b"_s, "part");
    old->setIntermediateDownloadTargetPath(part);
    end(*old, engine::DQDownloadStatusAborted);
    controller->clear();
    main.settle();
    EXPECT_EQ(queue().size(), 3) << "what can be gone on with does not go by itself";
    controller->retry({old});
    EXPECT_EQ(queue(), QStringList({u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_NE(download(u"b"_s), old);
    EXPECT_FALSE(settingsOf(u"b"_s).contains(keys::downloadFolder));
    EXPECT_EQ(download(u"b"_s)->intermediateDownloadTargetPath(), part);
    EXPECT_EQ(settingsOf(u"b"_s).string(keys::responseURL), address(u"mirror"_s));
    EXPECT_EQ(settingsOf(u"b"_s).string(keys::entityTag), u"tag"_s);
    EXPECT_EQ(frontEnd.beeps, 0);
    controller->retry({old});
    EXPECT_EQ(frontEnd.beeps, 1);
}

/// The program's own schemes, as a browser opens them.
class ProgramSchemes : public IntakeTest {
protected:
    QStringList opened(const QString& text) {
        main.advance(10);
        command.perform(text);
        main.settle();
        const QStringList all = addresses();
        const QStringList fresh = all.mid(known);
        known = all.size();
        return fresh;
    }
    static QString linked(int count) {
        QStringList lines;
        for (int number = 0; number < count; ++number) {
            lines.append(u"http://a.example/%1"_s.arg(number));
        }
        return u"orlop://linked/"_s + lines.join(u"%0A"_s);
    }

    app::DQURLHandlerCommand command{*controller, frontEnd};
    qsizetype known = 0;
};

TEST_F(ProgramSchemes, StandForAddresses) {
    const std::pair<QString, QStringList> cases[]{
        {u"ORLOP://A.example/Path?q"_s, {u"http://A.example/Path?q"_s}},
        {u"orlops://a.example/x"_s, {u"https://a.example/x"_s}},
        {u"SecureOrlop://a.example/X"_s, {u"https://a.example/X"_s}},
        {u"orlop://Encoded/https%3A%2F%2Fa.example%2F%25C3%25A4"_s,
         {u"https://a.example/%C3%A4"_s}},
        {u"orlop://encoded/http://a.example/1%0A%20http://a.example/2%0D"_s,
         {u"http://a.example/1"_s, u"http://a.example/2"_s}},
        {u"orlop://linked/http://a.example/one"_s, {u"http://a.example/one"_s}},
        {u"orlop://encoded/not%20one%20at%20all"_s, {}},
        {u"orlop://encoded/%FF%FE"_s, {}},
        {u"orlop://encoded/"_s, {}},
        {u"orlop://linked/"_s, {}},
        {u"http://a.example/plain"_s, {u"http://a.example/plain"_s}},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(opened(text), expected) << text.toStdString();
        EXPECT_EQ(app::hasProgramScheme(text), !text.startsWith(u"http"_s)) << text.toStdString();
    }
    EXPECT_TRUE(frontEnd.alerts.empty());
    EXPECT_FALSE(app::hasProgramScheme(u"orlop.example/x"_s));
    EXPECT_FALSE(app::hasProgramScheme(u"orlopx://a.example"_s));
    EXPECT_EQ(opened(u"orlop://orlop"_s), QStringList());
    EXPECT_TRUE(frontEnd.moves.contains(u"activate"_s));
}

TEST_F(ProgramSchemes, AskAboutSeveralLinkedFiles) {
    EXPECT_EQ(opened(linked(2)), QStringList()) << "declined";
    frontEnd.onConfirm = [](const app::Alert&) { return true; };
    EXPECT_EQ(opened(linked(10)).size(), 10);
    EXPECT_EQ(opened(linked(11)).size(), 11);
    ASSERT_EQ(frontEnd.alerts.size(), 3u);
    EXPECT_EQ(frontEnd.alerts[0].title, u"Download 2 Linked Files..."_s);
    EXPECT_EQ(frontEnd.alerts[1].text.split(u'\n').size(), 10);
    const QStringList cut = frontEnd.alerts[2].text.split(u'\n');
    EXPECT_EQ(cut.size(), 10);
    EXPECT_EQ(cut.value(8), u"http://a.example/8"_s);
    EXPECT_EQ(cut.last(), u"(1 more)"_s);
}

TEST_F(ProgramSchemes, DropEqualOnesWithinASecond) {
    const QString text = u"orlop://a.example/x"_s;
    const auto after = [&](double delay, const QString& address) {
        main.advance(delay);
        command.perform(address);
        main.settle();
        return addresses().size();
    };
    EXPECT_EQ(after(0, text), 1);
    EXPECT_EQ(after(0.9, text), 1);
    EXPECT_EQ(after(0.9, text), 1) << "each one moves the time on";
    EXPECT_EQ(after(1.5, text), 2);
    EXPECT_EQ(after(0.1, text + u"?"_s), 3);
    EXPECT_EQ(after(0.1, text), 4);
}

TEST_F(ProgramSchemes, SaysWhatATextWouldComeTo) {
    add({u"a"_s});
    const auto preview = [this](const QString& text) {
        return app::textPreview(text, controller->downloads(), defaults);
    };
    const auto mixed = preview(u"http://a.example/a\nhttp://b.example/{1-11}\nnothing in here"_s);
    EXPECT_EQ(app::previewText(mixed),
              u"12 addresses, 1 already in the list, 1 line not understood"_s);
    EXPECT_FALSE(mixed.only);
    EXPECT_EQ(preview(u"http://b.example/b"_s).only->absoluteString(), u"http://b.example/b"_s);
    EXPECT_TRUE(preview(u"http://b.example/{1-99999999}"_s).isMore) << "in a moment";
    EXPECT_EQ(app::previewText(preview({})), QString());
}

TEST_F(ProgramSchemes, TakesWhatIsTypedToWhereAndWhenItIsSaid) {
    app::ScriptArguments chosen;
    chosen.toPosixPath = folder.path();
    chosen.startsAtOnce = false;
    controller->openText(address(u"a"_s), chosen);
    EXPECT_EQ(download(u"a"_s)->status(), engine::DQDownloadStatusPaused);
    EXPECT_EQ(download(u"a"_s)->userSettings().string(engine::keys::downloadFolder),
              platform::abbreviateWithTilde(folder.path()));
}

}  // namespace
