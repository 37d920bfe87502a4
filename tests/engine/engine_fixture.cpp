#include "engine_fixture.h"

#include <QDir>
#include <QFile>
#include <chrono>
#include <thread>

#include "engine/settings.h"
#include "engine/workers/http_client_setup.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {

EngineTest::EngineTest()
    : defaults(std::make_unique<platform::UserDefaults>(folder.filePath(u"config"_s), u"Test"_s)),
      owner(*defaults, main.loop, disks, environment) {
    platform::installStandardDefaults(defaults.get());
    defaults->set(engine::settings::downloadsFolder, path(u"Downloads"_s));
    environment.applicationSupportPath = [this] { return path(u"support"_s); };
}

EngineTest::~EngineTest() {
    clearQueue();
    waitForDisks();
    platform::installStandardDefaults(nullptr);
}

void EngineTest::clearQueue() {
    for (const auto& download : engine::Downloads(downloads()))
        download->pause();
    owner.queue.removeIf([](const auto&) { return true; });
}

void EngineTest::waitForDisks() {
    disks.waitForDone();
    main.settle();
}

QString EngineTest::downloadedPath(const QString& name) const {
    return path(u"Downloads/"_s + name);
}

QByteArray EngineTest::contents(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

void EngineTest::write(const QString& path, const QByteArray& data) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(data), data.size());
}

bool EngineTest::waitForStatus(const engine::DQDownload& download, engine::StatusMask mask) {
    return main.waitUntil([&] { return (download.status() & mask) != 0; });
}

QStringList EngineTest::downloadedNames() const {
    return QDir(path(u"Downloads"_s))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

TransferTest::TransferTest()
    : cookies(platform::makeCookieStorage(QString())),
      session(std::make_unique<http::HTTPSession>(main.clock)) {
    platform::installSharedCookieStorage(cookies.get());
    engine::configureHTTPClient(*defaults, owner.queue.throttle());
}

TransferTest::~TransferTest() {
    clearQueue();
    waitForDisks();
    session.reset();
    main.settle();
    platform::installSharedCookieStorage(nullptr);
}

engine::DownloadPtr TransferTest::add(const QString& name) {
    return owner.add(server.url(name));
}

void TransferTest::run(const engine::DownloadPtr& download) {
    download->startDownload();
    ASSERT_TRUE(main.waitUntil(
        [&] { return !engine::matchesStatusMask(download->status(), engine::activeStatuses); }));
}

bool TransferTest::waitForBytes(const engine::DQDownload& download, qint64 count) {
    return main.waitUntil([&] { return download.figures().total() >= count; });
}

bool TransferTest::waitBehindTheMainLoop(const std::function<bool()>& done) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!done() && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    return done();
}

support::Reply TransferTest::reply(const QByteArray& body, support::Reply how) {
    how.body = body;
    how.headers.emplace_back("ETag", "\"" + std::to_string(qHash(body)) + "\"");
    return how;
}

void TransferTest::serve(const QByteArray& body, const support::Reply& how, const QString& name) {
    server.serve(name.toStdString(), reply(body, how));
}

engine::DownloadPtr TransferTest::pausedAfter(qint64 count, const support::Reply& served) {
    support::Reply stalling = served;
    stalling.stallAfter = static_cast<std::size_t>(count);
    server.serve("/file.bin", stalling);
    auto download = add();
    download->startDownload();
    EXPECT_TRUE(waitForBytes(*download, count));
    download->pause();
    EXPECT_EQ(download->status(), engine::DQDownloadStatusPaused);
    server.release();
    server.serve("/file.bin", served);
    return download;
}

engine::DownloadPtr TransferTest::restarted(const engine::DownloadPtr& download) {
    const QVariantMap archive = download->userSettingsArchiveWithPausedStatus(true, true);
    owner.queue.removeIf([](const auto&) { return true; });
    waitForDisks();
    auto restored = owner.add(archive.value(engine::keys::url).toString());
    restored->setIntermediateDownloadTargetPath(
        platform::expandTilde(archive.value(engine::keys::resumePath).toString()));
    restored->userSettingsFromArchive(archive);
    restored->invalidateDate(true);
    return restored;
}

std::vector<std::string> TransferTest::requestedRanges() const {
    std::vector<std::string> ranges;
    for (const support::ReceivedRequest& request : server.requests())
        ranges.push_back(request.header("Range").value_or(""));
    return ranges;
}

}  // namespace engine_test
