#include <QDir>
#include <QFileInfo>

#include "engine/settings.h"
#include "engine_fixture.h"
#include "http/http_request.h"
#include "links/paths/file_attributes.h"
#include "links/settings.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;
using support::patternedBytes;
using support::Reply;

TEST_F(TransferTest, FileArrivesWholeAndLeavesNothingBehind) {
    const QByteArray body = patternedBytes(1'000'003);
    serve(body);
    const auto download = add();
    run(download);
    EXPECT_EQ(download->status(), DQDownloadStatusDone);
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), body);
    EXPECT_EQ(downloadedNames(), QStringList{u"file.bin"_s});
    EXPECT_EQ(download->path(), downloadedPath(u"file.bin"_s));
    EXPECT_EQ(owner.history, std::vector{u"file.bin"_s});
    for (const QString& mark : {u"user.orlop.synced"_s, u"user.orlop.finishing"_s})
        EXPECT_FALSE(platform::extendedAttribute(download->path(), mark));
}

TEST_F(TransferTest, LogsInDetailTheOneThatIsToBe) {
    const support::LogRecorder recorder;
    platform::setDebugLogEnabled(false);
    serve(patternedBytes(10));
    run(add());
    EXPECT_EQ(recorder.lines(), QStringList());
    const auto download = add();
    download->setDebugLogged(true);
    run(download);
    for (const QString& part :
         {u"user agent: "_s, u"status code: 200"_s, u"- response headers: "_s})
        EXPECT_TRUE(recorder.contains(part)) << part.toStdString();
}

TEST_F(TransferTest, ChosenFileIsKeptThoughItsFolderIsYetToBeMade) {
    const QString chosen = path(u"new/folder/mine.bin"_s);
    for (const int size : {10, 3 << 20}) {
        serve(patternedBytes(size));
        const auto download = add();
        download->userSettings().set(keys::downloadFile, chosen);
        run(download);
        EXPECT_EQ(download->path(), chosen) << size;
        QDir(path(u"new"_s)).removeRecursively();
    }
}

TEST_F(TransferTest, AnswerThatIsNoFileAborts) {
    serve("not here", {.status = 404});
    server.serve("/empty.bin", reply({}));
    for (const QString& name : {u"/file.bin"_s, u"/empty.bin"_s}) {
        const auto download = add(name);
        run(download);
        EXPECT_EQ(download->status(), DQDownloadStatusAborted);
        EXPECT_EQ(downloadedNames(), QStringList());
    }
    EXPECT_EQ(downloads().front()->userSettings().value(keys::statusCode), 404);
    EXPECT_EQ(owner.history.size(), 2u);
}

TEST_F(TransferTest, RequestCarriesWhatTheRecordSays) {
    serve("body");
    struct Case {
        QString customAgent;
        QVariantMap request;
        std::string method, agent, referer;
        QByteArray body = {};
    };
    const std::string own = "Mozilla/5.0 (X11; Linux) Version/";
    const QVariantMap headers{{u"User-Agent"_s, u"Browser"_s},
                              {u"Referer"_s, u"http://b/"_s},
                              {u"Accept-Encoding"_s, u"gzip"_s},
                              {u"Range"_s, u"bytes=1-"_s}};
    const Case cases[] = {
        {{}, {}, "GET", own, "http://a/"},
        {u"Custom"_s, {}, "GET", "Custom", "http://a/"},
        {u"-"_s, {}, "GET", {}, "http://a/"},
        {u"-"_s, {{keys::requestAllHeaders, headers}}, "GET", "Browser", "http://b/"},
        {{},
         {{keys::requestPartialHeaders, QVariantMap{{u"X-A"_s, u"1"_s}}},
          {keys::requestMethod, u"POST"_s},
          {keys::requestBody, QByteArray("a=1")}},
         "POST",
         own,
         {},
         "a=1"},
    };
    for (const Case& c : cases) {
        set(settings::customUserAgent, c.customAgent);
        const auto download = add();
        download->userSettings().set(keys::referer, u"http://a/"_s);
        if (!c.request.isEmpty())
            download->userSettings().set(keys::request, c.request);
        run(download);
        const support::ReceivedRequest seen = server.requests().back();
        EXPECT_EQ(seen.method, c.method);
        EXPECT_EQ(seen.body, c.body);
        const std::string agent = seen.header("User-Agent").value_or("");
        EXPECT_EQ(agent.substr(0, c.agent.size()), c.agent);
        EXPECT_EQ(agent.empty(), c.agent.empty());
        EXPECT_EQ(seen.header("Referer").value_or(""), c.referer);
        EXPECT_FALSE(seen.header("Accept-Encoding") || seen.header("Range"));
    }
}

TEST_F(TransferTest, NameComesFromAddressHeaderAndType) {
    struct Case {
        qint64 policy;
        std::string disposition, type;
        QString name;
    };
    const Case cases[] = {
        {1, "attachment; filename*=utf-8''na%C3%AFve.txt; filename=x", "", u"naïve.txt"_s},
        {1, "attachment; filename=\"../../etc/pass wd\"", "", u"pass wd"_s},
        {1, "attachment; filename=plain", "text/html; charset=utf-8", u"plain.html"_s},
        {1, "attachment; filename=plain.bin", "text/html", u"plain.bin"_s},
        {2, "attachment; filename=page.htm", "text/html", u"page.htm"_s},
        {2, "attachment; filename=page.bin", "text/html", u"page.bin.html"_s},
        {3, "attachment; filename=page.htm", "text/html", u"page.htm.html"_s},
        {0, "attachment; filename=plain", "text/html", u"plain"_s},
        {1, "", "", u"file.bin"_s},
        {1, "attachment; filename=x", "text/calendar; charset=utf-8", u"x.ics"_s},
        {1, "attachment; filename=x", "text/vcard", u"x.vcf"_s},
        {1, "attachment; filename=x", "application/vnd.ms-powerpoint", u"x.ppt"_s},
        {1, "attachment; filename=x", "video/quicktime", u"x.mov"_s},
        {1, "attachment; filename=x", "application/pgp-keys", u"x.asc"_s},
        {1, "attachment; filename=x", "application/vnd.apple.mpegurl", u"x.m3u8"_s},
        {1, "attachment; filename=y", "application/x-mpegURL", u"y.m3u8"_s},
        {1, "attachment; filename=x", "application/dash+xml", u"x.mpd"_s},
        {1, "attachment; filename=x", "application/wasm", u"x.wasm"_s},
        {1, "attachment; filename=x", "image/jpg", u"x.jpg"_s},
        {1, "attachment; filename=x", "audio/opus", u"x.opus"_s},
        {1, "attachment; filename=x", "audio/webm", u"x.webm"_s},
        {2, "attachment; filename=x.jpeg", "image/jpg", u"x.jpeg"_s},
        {2, "attachment; filename=y.wasm", "application/wasm", u"y.wasm"_s},
        {1, "attachment; filename=libstdc++6", "", u"libstdc  6"_s},
    };
    for (const Case& c : cases) {
        set(settings::filenameExtensionPolicy, c.policy);
        Reply served = reply("body");
        if (!c.disposition.empty())
            served.headers.emplace_back("Content-Disposition", c.disposition);
        if (!c.type.empty())
            served.headers.emplace_back("Content-Type", c.type);
        server.serve("/file.bin", served);
        const auto download = add();
        run(download);
        EXPECT_EQ(download->name(), c.name) << c.disposition;
        EXPECT_EQ(QFileInfo(download->path()).fileName(), c.name);
    }
}

TEST_F(TransferTest, PlusSignsOfAHeaderStayIfTheSettingSaysSo) {
    set(links::settings::plusSignsStandForBlanks, false);
    Reply served = reply("body");
    served.headers.emplace_back("Content-Disposition", "attachment; filename=libstdc++6.deb");
    server.serve("/file.bin", served);
    const auto download = add();
    run(download);
    EXPECT_EQ(QFileInfo(download->path()).fileName(), u"libstdc++6.deb"_s);
}

TEST_F(TransferTest, RedirectIsFollowedAndRemembered) {
    const QByteArray body = patternedBytes(5000);
    serve(body, {}, u"/there/real.bin"_s);
    server.serve("/file.bin",
                 {.status = 302, .headers = {{"Location", "/there/real.bin"}}, .body = "moved"});
    const auto download = add();
    run(download);
    EXPECT_EQ(contents(downloadedPath(u"real.bin"_s)), body);
    const QStringList sources =
        links::valueForExtendedFileAttribute(download->path(),
                                             QString::fromUtf16(links::attributes::sourceURLs))
            .toStringList();
    EXPECT_EQ(sources, (QStringList{server.url(u"/there/real.bin"_s), server.url(u"/file.bin"_s)}));
    EXPECT_EQ(download->originalURLString(), server.url(u"/file.bin"_s));
}

TEST_F(TransferTest, ServersDateGoesToTheFileIfWanted) {
    Reply served = reply("body");
    served.headers.emplace_back("Last-Modified", "Tue, 15 Nov 1994 12:45:26 GMT");
    server.serve("/file.bin", served);
    const auto dateWithAdoption = [&](qint64 adoption) {
        set(settings::lastModifiedHeaderAdoption, adoption);
        const auto download = add();
        run(download);
        return QFileInfo(download->path()).lastModified().toSecsSinceEpoch();
    };
    constexpr qint64 served1994 = 784903526;
    EXPECT_EQ(dateWithAdoption(1), served1994);
    EXPECT_NE(dateWithAdoption(0), served1994);
    EXPECT_NE(dateWithAdoption(-1), served1994);
}

TEST_F(TransferTest, FileTellsTheQueriesOfItsAddressesIfTheSettingSaysSo) {
    const QString address = u"/file.bin?key=secret"_s;
    serve("body");
    for (const bool stores : {true, false}) {
        set(links::settings::storeQueriesOfSourceURLs, stores);
        const auto download = add(address);
        run(download);
        for (const QString& name : {u"user.xdg.origin.url"_s, u"user.orlop.source-urls"_s})
            EXPECT_EQ(platform::extendedAttribute(download->path(), name)
                          .value_or(QByteArray())
                          .contains("secret"),
                      stores);
        EXPECT_TRUE(links::isFromURLString(download->path(),
                                           server.url(stores ? address : u"/file.bin"_s)));
    }
}

TEST_F(TransferTest, RulesOpenTheFinishedFile) {
    serve("body");
    owner.rules = {
        QVariantMap{{u"Extensions"_s, QStringList{u"bin"_s}}, {u"Application"_s, u"first"_s}},
        QVariantMap{{u"Hosts"_s, QStringList{u"other.example"_s}}, {u"Application"_s, u"never"_s}},
        QVariantMap{{u"Hosts"_s, QStringList{u"0.0.1"_s}}, {u"Application"_s, u"second"_s}}};
    QStringList asked;
    environment.openWithApplication = [&](const QString& file, const QString& application) {
        asked.append(application + u' ' + QFileInfo(file).fileName());
        return false;
    };
    run(add());
    EXPECT_EQ(asked, (QStringList{u"first file.bin"_s, u"second file.bin"_s}));
}

TEST_F(TransferTest, TakenNamesAreNeverReplaced) {
    write(downloadedPath(u"file.bin"_s), "mine");
    serve("body");
    const auto counted = add();
    run(counted);
    EXPECT_EQ(contents(downloadedPath(u"file 1.bin"_s)), "body");
    const auto chosen = add();
    chosen->userSettings().set(keys::downloadFile, downloadedPath(u"file.bin"_s));
    int beeps = 0;
    environment.beep = [&] { ++beeps; };
    run(chosen);
    EXPECT_EQ(contents(downloadedPath(u"file.bin"_s)), "mine");
    EXPECT_EQ(chosen->status(), DQDownloadStatusDone);
    EXPECT_EQ(contents(chosen->path()), "body");
    EXPECT_EQ(beeps, 1);
    EXPECT_TRUE(log.contains(u"cannot move downloaded"_s));
    chosen->withdraw();
    chosen->giveUpData();
    waitForDisks();
    EXPECT_EQ(contents(chosen->path()), "body") << "no partial data, though it lies there";
}

TEST_F(TransferTest, PartAnsweredToTheWishForTheWholeIsRefused) {
    Reply part = reply("tail");
    part.status = 206;
    part.headers.emplace_back("Content-Range", "bytes 96-99/100");
    server.serve("/file.bin", part);
    const auto download = add();
    run(download);
    EXPECT_TRUE(download->isInterrupted());
    EXPECT_EQ(downloadedNames(), QStringList());
}

TEST_F(TransferTest, FinishTakesTheFileToWhereSettingsSayByThen) {
    const QByteArray body = patternedBytes(100'000);
    serve(body, {.stallAfter = 50'000});
    const auto download = add();
    download->startDownload();
    ASSERT_TRUE(waitForBytes(*download, 50'000));
    EXPECT_EQ(downloadedNames(), QStringList{u"file.bin.orlop"_s});
    defaults->set(settings::downloadsFolder, path(u"Elsewhere"_s));
    download->setName(u"renamed.bin"_s);
    server.release();
    ASSERT_TRUE(waitForStatus(*download, finishedStatuses));
    EXPECT_EQ(contents(path(u"Elsewhere/renamed.bin"_s)), body);
    EXPECT_EQ(downloadedNames(), QStringList());
}

}  // namespace
}  // namespace engine_test
