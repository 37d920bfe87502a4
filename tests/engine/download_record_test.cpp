#include <QDir>
#include <QFile>

#include "engine/record/rule_matching.h"
#include "engine/settings.h"
#include "engine_fixture.h"
#include "platform/base/log.h"
#include "platform/files/files.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;

/// A page rule that names files after the title.
class TitleReader final : public PageReader {
public:
    [[nodiscard]] bool isDownloadPageURL(const platform::Url& url) const override {
        return url.path().startsWith(u"/page"_s);
    }
    [[nodiscard]] std::optional<QString> preservedNamePattern(
        const platform::Url& url) const override {
        return isDownloadPageURL(url) ? std::optional(u"title: (.*) - Site"_s) : std::nullopt;
    }
    void URLsFromDownloadPageWithTitle(
        const platform::Url&,
        std::function<void(links::ExtractedLinks)> completion) const override {
        answers.push_back(std::move(completion));
    }

    mutable std::vector<std::function<void(links::ExtractedLinks)>> answers;
};

platform::Url url(const QString& text) {
    return *platform::Url::parse(text);
}

class DownloadRecordTest : public EngineTest {
protected:
    DownloadRecordTest() { environment.pageReader = reader; }

    std::shared_ptr<TitleReader> reader = std::make_shared<TitleReader>();
};

TEST_F(DownloadRecordTest, NamesFollowTheirSources) {
    const auto download = owner.add(u"http://www.example.org/dir/a+b%20c.zip?x=1"_s);
    EXPECT_EQ(download->name(), u"a b c.zip"_s);
    EXPECT_EQ(download->locationKey(), u"example.org/dir/a+b%20c.zip?x=1"_s);
    download->setName(u"archive.zip.001.zip"_s);
    EXPECT_EQ(download->name(), u"archive.zip.001"_s);
    download->setName(u"get.php?id=7"_s);
    EXPECT_EQ(download->name(), u"get.php"_s);
    download->setName(u"The Film.mkv"_s);
    EXPECT_EQ(download->sortName(), u"Film.mkv"_s);
    download->setName(u"photo\u202Egpj.exe"_s);
    EXPECT_EQ(download->name(), u"photogpj.exe"_s) << "a program that poses as a picture";
    download->setName(u"The Film.mkv"_s);
    EXPECT_EQ(download->icon(), u"mkv"_s);
    set(settings::privateDownloading, true);
    set(settings::privateDownloadingPreservesExtensions, true);
    EXPECT_EQ(download->displayName(), u"T…·······.mkv"_s);
    set(settings::privateDownloadingPreservesExtensions, false);
    EXPECT_EQ(download->icon(), std::nullopt);
    EXPECT_EQ(download->displayName(), u"T…·······.mkv"_s) << "kept until the name changes";
    EXPECT_FALSE(download->description().contains(u"Film"_s));
    set(settings::privateDownloading, false);
    set(settings::displayLocationsAsNames, true);
    EXPECT_EQ(download->displayName(), download->locationKey());
    download->setName({});
    EXPECT_EQ(download->name(), u"a b c.zip"_s);
    for (const QString& user : {u"TOKEN@"_s, u"me:secret@"_s})
        EXPECT_EQ(owner.add(u"http://"_s + user + u"example.org/a"_s)->locationKey(),
                  u"example.org/a"_s);
    EXPECT_EQ(owner.add(u"https://www.example.org/"_s)->locationKey(),
              u"https://www.example.org/"_s);
    platform::setDebugLogEnabled(true);
    EXPECT_TRUE(owner.add(u"http://example.org/a%2Fb%1F"_s)
                    ->description()
                    .startsWith(u"<DQDownload: example.org/a%2Fb%1F 0x"_s))
        << "no places for what follows";
    platform::setDebugLogEnabled(false);
    EXPECT_EQ(owner.add(u"http://example.org/a"_s)->icon(), u"com.tarnworks.imaginaryfiletype"_s);
}

TEST_F(DownloadRecordTest, PageRuleKeepsTheTitleAsName) {
    const auto download = owner.add(u"http://example.org/page/1"_s);
    download->userSettings().set(keys::downloadPageTitle, u"Some Film.x - Site"_s);
    download->setName(u"42.mp4"_s);
    EXPECT_EQ(download->name(), u"Some Film.mp4"_s);
    EXPECT_EQ(download->userSettings().string(keys::name), u"Some Film.mp4"_s);
}

TEST_F(DownloadRecordTest, RulesMatchHostsFromTheRight) {
    const auto download = owner.add(u"http://files.Example.org/a.TAR.gz"_s);
    const auto matches = [&](const QVariant& hosts, const QVariant& extensions) {
        QVariantMap rule;
        if (hosts.isValid())
            rule.insert(u"Hosts"_s, hosts);
        if (extensions.isValid())
            rule.insert(u"Extensions"_s, extensions);
        return download->matchesSpecialCase(rule);
    };
    const auto list = [](const QString& text) { return QVariant(QStringList{text}); };
    EXPECT_TRUE(matches(list(u"org"_s), {}));
    EXPECT_TRUE(matches(list(u"EXAMPLE.org"_s), {}));
    EXPECT_FALSE(matches(list(u"ample.org"_s), {}));
    EXPECT_FALSE(matches(list(u"more.files.example.org"_s), {}));
    EXPECT_FALSE(matches(QStringList{}, {}));
    EXPECT_FALSE(matches({}, {}));
    EXPECT_TRUE(matches({}, list(u"GZ"_s)));
    EXPECT_FALSE(matches(list(u"org"_s), list(u"zip"_s)));
    for (const QString& host : {u"https://example.org/"_s, u"*.example.org"_s,
                                u"example.org:8080"_s, u"example.org."_s, u".org"_s})
        EXPECT_TRUE(matches(list(host), {})) << qPrintable(host);
    for (const QString& extension : {u"*.gz"_s, u".gz"_s, u"tar.gz"_s, u"*.tar.gz"_s})
        EXPECT_TRUE(matches({}, list(extension))) << qPrintable(extension);
    for (const QString& extension : {u"r.gz"_s, u"a.tar.gz"_s, u""_s, u"z"_s})
        EXPECT_FALSE(matches({}, list(extension))) << qPrintable(extension);
    download->userSettings().set(keys::originalURL, u"http://elsewhere.net/a"_s);
    EXPECT_FALSE(matches(list(u"org"_s), {}));
    EXPECT_FALSE(owner.add(u"file:///a"_s)->matchesSpecialCase({{u"Hosts"_s, list(u""_s)}}));
    const auto other = [&](const QString& url, const QString& host) {
        return owner.add(url)->matchesSpecialCase({{u"Hosts"_s, list(host)}});
    };
    EXPECT_TRUE(other(u"http://dl.xn--mller-kva.example/x"_s, u"M\u00FCller.example"_s));
    EXPECT_TRUE(other(u"http://example.net./x"_s, u"example.net"_s));
    EXPECT_TRUE(other(u"http://[2001:db8::1]/x"_s, u"[2001:DB8::1]"_s));
}

TEST(RuleTexts, AreHostsAndExtensionsOrNothing) {
    for (const auto& [text, host] : std::initializer_list<std::pair<QString, QString>>{
             {u"https://Example.org/"_s, u"Example.org"_s},
             {u"*.example.net"_s, u"example.net"_s},
             {u"example.com:8080"_s, u"example.com"_s},
             {u"http://m\u00FCller.example."_s, u"m\u00FCller.example"_s},
             {u"[::1]:80"_s, u"::1"_s},
             {u"localhost"_s, u"localhost"_s},
             {u"https://example.org/path"_s, u""_s},
             {u"a b"_s, u""_s},
             {u"a..b"_s, u""_s},
             {u"*"_s, u""_s}})
        EXPECT_EQ(engine::hostFromText(text), host) << qPrintable(text);
    for (const auto& [text, extension] :
         std::initializer_list<std::pair<QString, QString>>{{u"*.zip"_s, u"zip"_s},
                                                            {u".zip"_s, u"zip"_s},
                                                            {u"tar.gz"_s, u"tar.gz"_s},
                                                            {u"z ip"_s, u""_s},
                                                            {u"zip,pdf"_s, u""_s},
                                                            {u"."_s, u""_s}})
        EXPECT_EQ(engine::extensionFromText(text), extension) << qPrintable(text);
}

TEST_F(DownloadRecordTest, ArchiveHoldsWhatARestartNeeds) {
    const auto download = owner.add(u"http://example.org/a"_s);
    const QVariantMap kept{{keys::accelerationFailed, true},
                           {keys::downloadFile, u"~/f"_s},
                           {keys::downloadFolder, u"~/d"_s},
                           {keys::name, u"n"_s},
                           {keys::rangesDisabled, true},
                           {keys::referer, u"r"_s},
                           {keys::request, QVariantMap{{keys::requestMethod, u"POST"_s}}},
                           {keys::statusCode, 404},
                           {keys::entityTag, u"\"t\""_s},
                           {keys::identity, u"abc"_s},
                           {keys::keepsName, true},
                           {keys::handOver, u"h-1"_s},
                           {keys::page, u"http://p/"_s},
                           {keys::downloadPageTitle, u"t"_s}};
    for (auto field = kept.cbegin(); field != kept.cend(); ++field)
        download->userSettings().set(field.key(), field.value());
    download->userSettings().set(keys::originalURL, u"http://o/"_s);
    const QVariantMap archive = download->userSettingsArchiveWithPausedStatus(true, true);
    QVariantMap expected = kept;
    expected.insert(keys::url, u"http://example.org/a"_s);
    expected.insert(keys::paused, true);
    expected.insert(keys::date, download->userSettings().value(keys::date));
    EXPECT_EQ(archive, expected);

    const QDateTime added = download->date();
    main.clock.advance(1000);
    const auto restored = owner.add(u"http://example.org/a"_s);
    EXPECT_NE(restored->date(), added);
    restored->userSettingsFromArchive(archive);
    restored->invalidateDate(true);
    EXPECT_EQ(restored->date(), added);
    EXPECT_EQ(restored->userSettingsArchiveWithPausedStatus(true, false), archive);
}

TEST_F(DownloadRecordTest, MovedFileIsFoundAgain) {
    write(path(u"a/file"_s), "x");
    const auto download =
        owner.add(platform::Url::fromFilePath(path(u"a/file"_s)).absoluteString());
    download->userSettings().set(keys::alias, platform::fileBookmark(path(u"a/file"_s)));
    ASSERT_TRUE(QFile::rename(path(u"a/file"_s), path(u"a/renamed"_s)));
    EXPECT_EQ(download->pathByCheckingExistence(false), path(u"a/renamed"_s));
    EXPECT_EQ(download->URL(), platform::Url::fromFilePath(path(u"a/renamed"_s)));
    QFile::remove(path(u"a/renamed"_s));
    EXPECT_EQ(download->path(), path(u"a/renamed"_s));
    EXPECT_TRUE(download->userSettings().contains(keys::alias));
    EXPECT_FALSE(download->fileExists());
    EXPECT_FALSE(download->userSettings().contains(keys::alias));
    // The volume is away, not the file.
    const auto away = owner.add(u"file:///media/nobody/Disk/file"_s);
    away->userSettings().set(keys::alias, QByteArray("x"));
    EXPECT_FALSE(away->fileExists());
    EXPECT_TRUE(away->userSettings().contains(keys::alias));
}

/// Nowhere to throw it: the current folder is no place for it.
TEST_F(DownloadRecordTest, FileStaysWhereThereIsNoTrash) {
    write(path(u"no-folder"_s), "x");
    qputenv("XDG_DATA_HOME", QFile::encodeName(path(u"no-folder"_s)));
    write(path(u"done.txt"_s), "x");
    const auto download =
        owner.add(platform::Url::fromFilePath(path(u"done.txt"_s)).absoluteString());
    download->changeStatus(DQDownloadStatusDone, StatusCause::Finished);
    const QDir here;
    const QStringList before = here.entryList(QDir::AllEntries);
    download->removeAndMoveToTrash();
    waitForDisks();
    qunsetenv("XDG_DATA_HOME");
    EXPECT_EQ(contents(path(u"done.txt"_s)), "x");
    EXPECT_EQ(owner.notThrownAway, std::vector{path(u"done.txt"_s)});
    EXPECT_EQ(here.entryList(QDir::AllEntries), before);
}

TEST_F(DownloadRecordTest, PageGivesOneAddressOrSeveral) {
    const auto single = owner.add(u"http://127.0.0.1:1/page/1"_s);
    single->startDownload();
    EXPECT_EQ(single->status(), DQDownloadStatusDownloading);
    reader->answers[0]({{url(u"file:///nowhere"_s)}, u"A Title"_s});
    EXPECT_EQ(single->userSettings().string(keys::referer), u"http://127.0.0.1:1/page/1"_s);
    EXPECT_EQ(single->userSettings().string(keys::downloadPageTitle), u"A Title"_s);
    ASSERT_TRUE(waitForStatus(*single, DQDownloadStatusPaused));

    // An answer that comes after a pause is not wanted any more.
    const auto late = owner.add(u"http://127.0.0.1:1/page/2"_s);
    late->startDownload();
    late->pause();
    reader->answers[1]({{url(u"file:///nowhere"_s)}, {}});
    reader->answers[1]({{url(u"http://a/1"_s), url(u"http://a/2"_s)}, {}});
    EXPECT_TRUE(owner.opened.empty());
    EXPECT_EQ(late->status(), DQDownloadStatusPaused);
    EXPECT_FALSE(late->isInterrupted());

    const auto several = owner.add(u"http://127.0.0.1:1/page/3"_s);
    several->startDownload();
    reader->answers[2]({{url(u"http://a/1"_s), url(u"http://a/2"_s)}, {}});
    EXPECT_EQ(owner.opened.size(), 2u);
    EXPECT_EQ(owner.opened[1], std::pair(u"http://a/2"_s, u"http://127.0.0.1:1/page/3"_s));
    EXPECT_EQ(several->status(), DQDownloadStatusAborted);
    EXPECT_EQ(downloads().size(), 2u);
}

TEST_F(DownloadRecordTest, PagesThatLeadBackAreNotReadAgain) {
    const auto linksOf = [&](const QStringList& chain, const std::vector<platform::Url>& found) {
        owner.opened.clear();
        const auto page = owner.add(u"http://a/page/2"_s);
        page->userSettings().set(keys::downloadPageChain, chain);
        page->startDownload();
        reader->answers.back()({found, {}});
        QStringList opened;
        for (const auto& [address, referrer] : owner.opened)
            opened.append(address);
        return opened;
    };
    EXPECT_EQ(
        linksOf({u"http://a/page/1"_s}, {url(u"http://a/page/1"_s), url(u"http://a/page/2#top"_s),
                                         url(u"http://a/page/3"_s), url(u"http://a/file"_s)}),
        QStringList({u"http://a/page/3"_s, u"http://a/file"_s}));
    EXPECT_EQ(owner.lastPageChain, QStringList({u"http://a/page/1"_s, u"http://a/page/2"_s}));
    EXPECT_EQ(owner.opened[0].second, u"http://a/page/2"_s);

    const QStringList longChain{u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s, u"7"_s};
    EXPECT_EQ(
        linksOf(longChain, {url(u"http://a/page/9"_s), url(u"http://a/x"_s), url(u"http://a/y"_s)}),
        QStringList({u"http://a/x"_s, u"http://a/y"_s}));
}

}  // namespace
}  // namespace engine_test
