#include <gmock/gmock.h>
#include <openssl/evp.h>

#include <QDir>
#include <QTemporaryDir>
#include <map>

#include "desktop/settings.h"
#include "desktop/updates/news_manager.h"
#include "desktop/updates/sparkle_wrapper.h"
#include "platform/base/user_defaults.h"
#include "support/main_loop.h"

using namespace Qt::Literals::StringLiterals;
using desktop::DQSparkleWrapper;
using testing::ElementsAre;
using testing::IsEmpty;
namespace settings = desktop::settings;

namespace {

/// A key of this run.
class SigningKey {
public:
    SigningKey() : key_(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"), EVP_PKEY_free) {}

    QByteArray publicKey() const {
        QByteArray bytes(32, 0);
        std::size_t size = 32;
        EVP_PKEY_get_raw_public_key(key_.get(), data(bytes), &size);
        return bytes;
    }
    QByteArray sign(const QByteArray& text) const {
        QByteArray signature(64, 0);
        std::size_t size = 64;
        EVP_MD_CTX* context = EVP_MD_CTX_new();
        EVP_DigestSignInit(context, nullptr, nullptr, nullptr, key_.get());
        EVP_DigestSign(context, data(signature), &size,
                       reinterpret_cast<const unsigned char*>(text.constData()),
                       static_cast<std::size_t>(text.size()));
        EVP_MD_CTX_free(context);
        return signature.toBase64();
    }

private:
    static unsigned char* data(QByteArray& bytes) {
        return reinterpret_cast<unsigned char*>(bytes.data());
    }
    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key_;
};

/// The web of a test: answers at once.
class Web final : public desktop::DocumentFetcher {
public:
    void fetch(const QString& address, Answer answer) override {
        asked.append(address);
        const auto found = pages.find(address);
        answer(found == pages.end() ? std::nullopt : std::optional(found->second));
    }
    std::map<QString, QByteArray> pages;
    QStringList asked;
};

QByteArray feedOf(const QByteArray& items) {
    return "<?xml version='1.0'?><rss><channel><title>x</title>" + items + "</channel></rss>";
}
QByteArray item(const QByteArray& version, const QByteArray& page = "https://a.example/get") {
    return "<item><version>" + version + "</version><link>" + page + "</link><b><c/></b></item>";
}

class OnlineTest : public testing::Test {
protected:
    QTemporaryDir folder;
    support::MainLoop main;
    platform::UserDefaults defaults{folder.path(), u"test"_s};
    Web web;
};

class UpdatesTest : public OnlineTest {
protected:
    void publish(const QByteArray& feed) {
        web.pages[u"http://a.example/feed"_s] = feed;
        web.pages[u"http://a.example/feed.sig"_s] = key.sign(feed);
    }
    std::unique_ptr<DQSparkleWrapper> make(const QString& version = u"1.2"_s,
                                           const QString& manager = {}) {
        return std::make_unique<DQSparkleWrapper>(
            DQSparkleWrapper::Surroundings{defaults, main.loop, web},
            desktop::OnlineSources{
                u"http://a.example/feed"_s, key.publicKey(), {}, u"https://a.example/product"_s},
            version, manager);
    }

    const SigningKey key;
};

TEST_F(UpdatesTest, FindsTheNewestVersionAndRemembersIt) {
    struct Case {
        QByteArray items;
        const char16_t* status;
        const char16_t* page;
    };
    for (const Case& test :
         {Case{item("1.10") + item("1.3"),
               u"Orlop 1.10 is now available! You are currently using Orlop 1.2.",
               u"https://a.example/get"},
          {item("1.2.0"), u"Orlop 1.2 is up to date.", u"https://a.example/product"},
          {item("0.9") + item("words") + item("2.0-beta"), u"Orlop 1.2 is up to date.",
           u"https://a.example/product"},
          {item("3", "file:///etc/passwd"),
           u"Orlop 3 is now available! You are currently using Orlop 1.2.",
           u"https://a.example/product"},
          {"", u"Orlop 1.2 is up to date.", u"https://a.example/product"}}) {
        publish(feedOf(test.items));
        const auto updates = make();
        updates->checkForUpdates();
        EXPECT_EQ(updates->statusDescription(), QString::fromUtf16(test.status));
        EXPECT_EQ(updates->page()->absoluteString(), QString::fromUtf16(test.page));
        EXPECT_TRUE(updates->statusDateDescription().startsWith(u"Last check: "_s));
        EXPECT_EQ(make()->statusDescription(), QString::fromUtf16(test.status)) << "restarted";
        EXPECT_EQ(make(u"1.2.1"_s)->statusDescription(), QString()) << "of another version";
    }
}

TEST_F(UpdatesTest, BelievesOnlyWhatIsSigned) {
    const QString feedAddress = u"http://a.example/feed"_s, sigAddress = feedAddress + u".sig"_s;
    const auto isBelieved = [&] {
        const auto updates = make();
        updates->checkForUpdates();
        return updates->problem().isEmpty();
    };
    publish(feedOf(item("9")));
    const QByteArray feed = web.pages[feedAddress], signature = web.pages[sigAddress];
    EXPECT_TRUE(isBelieved());
    web.pages[sigAddress] = signature.left(40) + "\n" + signature.mid(40) + "\n";
    EXPECT_TRUE(isBelieved()) << "lines may be broken";
    defaults.removeObject(settings::updateStatus.name());
    for (const QByteArray& bad : {QByteArray(), QByteArray("x"), signature.left(80),
                                  QByteArray(1 << 20, 'A'), SigningKey().sign(feed)}) {
        web.pages[sigAddress] = bad;
        EXPECT_FALSE(isBelieved()) << bad.left(90).toStdString();
    }
    web.pages[sigAddress] = signature;
    web.pages[feedAddress] = feedOf(item("99"));
    EXPECT_FALSE(isBelieved());
    web.pages.erase(sigAddress);
    EXPECT_FALSE(isBelieved());
    web.pages.clear();
    EXPECT_FALSE(isBelieved()) << "not reached";
    EXPECT_EQ(make()->statusDescription(), QString());
}

TEST_F(UpdatesTest, ChecksOnceADayIfThatIsWanted) {
    publish(feedOf(""));
    constexpr double day = 86400;
    {
        const auto updates = make();
        EXPECT_TRUE(updates->checksAutomatically());
        updates->becomeSparkleDelegate();
        EXPECT_EQ(web.asked.size(), 2);
        main.advance(day - 10);
        EXPECT_EQ(web.asked.size(), 2);
    }
    const auto updates = make();
    updates->becomeSparkleDelegate();
    EXPECT_EQ(web.asked.size(), 2) << "a restart does not count";
    main.advance(20);
    EXPECT_EQ(web.asked.size(), 4);
    updates->toggleAutomaticChecking();
    main.advance(3 * day);
    EXPECT_EQ(web.asked.size(), 4);
    EXPECT_FALSE(make()->checksAutomatically());
    defaults.removeObject(settings::automaticUpdateChecks.name());
    EXPECT_FALSE(make(u"1"_s, u"dpkg"_s)->checksAutomatically());
    EXPECT_EQ(make(u"1"_s, u"dpkg"_s)->page()->absoluteString(),
              u"appstream:com.tarnworks.Orlop"_s);
    const DQSparkleWrapper::Surroundings around{defaults, main.loop, web};
    DQSparkleWrapper nowhere(around, {}, u"1"_s, {});
    nowhere.becomeSparkleDelegate();
    nowhere.checkForUpdates();
    EXPECT_FALSE(nowhere.canCheck() || nowhere.page() || nowhere.isChecking());
    EXPECT_EQ(web.asked.size(), 4);
}

TEST(PackageManager, LooksAfterWhatItInstalledAndNothingElse) {
    const QTemporaryDir root;
    const auto provide = [&](const QString& path) {
        QDir(root.path()).mkpath(QFileInfo(root.filePath(path)).path());
        EXPECT_TRUE(QFile(root.filePath(path)).open(QFile::WriteOnly));
    };
    const auto manager = [&](const QString& program) {
        return desktop::packageManagerOf(program, root.path());
    };
    EXPECT_EQ(manager(u"/usr/bin/orlop"_s), QString());
    provide(u"usr/lib/sysimage/rpm"_s);
    EXPECT_EQ(manager(u"/usr/bin/orlop"_s), u"rpm"_s);
    provide(u"var/lib/dpkg/info/orlop.list"_s);
    EXPECT_EQ(manager(u"/usr/bin/orlop"_s), u"dpkg"_s);
    EXPECT_EQ(manager(u"/usr/local/bin/orlop"_s), QString());
    EXPECT_EQ(manager(u"/home/somebody/orlop/bin/orlop"_s), QString());
    provide(u".flatpak-info"_s);
    EXPECT_EQ(manager(u"/app/bin/orlop"_s), u"Flatpak"_s);
}

TEST(Appcast, HostileFeedsHoldNothing) {
    QByteArray bomb = "<!DOCTYPE a [<!ENTITY a 'aaaaaaaaaa'>";
    for (char name = 'b'; name < 'k'; ++name)
        bomb += QByteArray("<!ENTITY ") + name + " '" +
                QByteArray(QByteArray("&") + char(name - 1) + ";").repeated(10) + "'>";
    bomb += "]><rss><item><version>&j;</version></item></rss>";
    for (const QByteArray& feed :
         {QByteArray(), QByteArray("no XML"), QByteArray("<rss><item><version>2</version>"),
          feedOf("<item><version>" + QByteArray(100'000, '1') + "</version></item>"),
          QByteArray("<a>").repeated(200'000), bomb})
        EXPECT_FALSE(desktop::newestItem(feed)) << feed.left(60).toStdString();
}

class NewsTest : public OnlineTest, protected desktop::NewsView {
protected:
    static constexpr double day = 86400;
    const QString address = u"http://a.example/news"_s;

    void publish(int version, const QString& where = {}) {
        web.pages[where.isEmpty() ? address : where] =
            "<p>DQ_NEWS_VERSION[" + QByteArray::number(version) + "]</p>";
    }
    std::unique_ptr<desktop::DQNewsManager> make(const QString& from) {
        return std::make_unique<desktop::DQNewsManager>(
            desktop::DQNewsManager::Surroundings{defaults, main.loop, web, *this}, from, u"1.2"_s);
    }
    std::unique_ptr<desktop::DQNewsManager> make() { return make(address); }
    /// What has happened since the last time.
    QStringList taken() { return std::exchange(events, {}); }

    void show(const desktop::News&) override { events.append(u"shown"_s), isOpen = true; }
    void showBehind(const desktop::News&) override { events.append(u"behind"_s), isOpen = true; }
    bool isVisible() const override { return isOpen; }
    void setAlertShown(bool shown) override { events.append(shown ? u"sign"_s : u"no sign"_s); }
    void beep() override { events.append(u"beep"_s); }
    void tell(const QString& problem) override { events.append(problem); }

    QStringList events;
    bool isOpen = false;
};

TEST_F(NewsTest, TheFirstComeUpAndLaterOnesAreOnlyAnnounced) {
    publish(1);
    const auto news = make();
    news->launchNews(true);
    EXPECT_THAT(taken(), ElementsAre(u"behind"_s));
    EXPECT_FALSE(defaults.hasValueForKey(settings::latestNews.name()));
    EXPECT_TRUE(defaults.get(settings::newsPoppedUpOnce));
    isOpen = false;
    main.advance(day);
    EXPECT_THAT(taken(), IsEmpty()) << "the same version";
    publish(2);
    main.advance(day);
    EXPECT_THAT(taken(), ElementsAre(u"sign"_s));
}

TEST_F(NewsTest, WhatWaitsOrStandsOpenOutlastsARestart) {
    defaults.set(settings::newsPoppedUpOnce, true);
    publish(2);
    make()->launchNews(true);
    EXPECT_THAT(taken(), ElementsAre(u"sign"_s));
    const auto later = make();
    later->showWaitingNews();
    EXPECT_THAT(taken(), ElementsAre(u"sign"_s));
    later->showNewsFromStatusItem();
    EXPECT_THAT(taken(), ElementsAre(u"no sign"_s, u"shown"_s));
    later->showNewsFromStatusItem();
    EXPECT_THAT(taken(), IsEmpty());
    EXPECT_FALSE(defaults.hasValueForKey(settings::latestNews.name()));
    later->preserveNews();
    EXPECT_TRUE(defaults.hasValueForKey(settings::latestNews.name()));
    EXPECT_FALSE(defaults.get(settings::newsPoppedUpOnce));
    isOpen = false;
    make()->showWaitingNews();
    EXPECT_THAT(taken(), ElementsAre(u"behind"_s));
    defaults.set(settings::latestNews, {{u"HTML Content"_s, u"x"_s}, {u"URL"_s, u"/etc"_s}});
    make()->showWaitingNews();
    EXPECT_THAT(taken(), IsEmpty()) << "edited by hand";
}

TEST_F(NewsTest, OnlyWhatIsNewIsNews) {
    struct Case {
        const char* page;
        bool isNews;
    };
    for (const Case& test : {Case{"", false},
                             {"no marker", false},
                             {"DQ_NEWS_VERSION[5]", true},
                             {"DQ_NEWS_VERSION[5]", false},
                             {"DQ_NEWS_VERSION[4]", false},
                             {"DQ_NEWS_VERSION[6", false},
                             {"DQ_NEWS_VERSION[-1]", true},
                             {"DQ_NEWS_VERSION[-1]", true}}) {
        isOpen = false;
        defaults.set(settings::newsPoppedUpOnce, true);
        web.pages[address] = test.page;
        make()->launchNews(true);
        EXPECT_EQ(!taken().isEmpty(), test.isNews) << test.page;
    }
    EXPECT_EQ(defaults.get(settings::newsVersion), 5);
}

TEST_F(NewsTest, SuppressedNewsComeByHandOnly) {
    defaults.set(settings::suppressNews, true);
    publish(1);
    const auto news = make();
    news->launchNews(true);
    EXPECT_THAT(web.asked, IsEmpty());
    defaults.set(settings::suppressNews, false);
    main.advance(day);
    EXPECT_EQ(web.asked.size(), 1) << "the next day goes on";
    defaults.set(settings::suppressNews, true);
    taken();
    news->launchNews(false);
    EXPECT_THAT(taken(), ElementsAre(u"no sign"_s, u"shown"_s));
    web.pages.clear();
    news->launchNews(false);
    EXPECT_THAT(taken(), ElementsAre(u"The page of news cannot be reached."_s));
    const auto nowhere = make(QString());
    nowhere->launchNews(true);
    nowhere->launchNews(false);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(NewsTest, WhatComesLateDoesNotPopUp) {
    const auto news = make();
    news->launchNews(true);
    main.advance(2.9);
    EXPECT_FALSE(defaults.get(settings::newsPoppedUpOnce));
    news->launchNews(false);
    main.advance(10);
    EXPECT_FALSE(defaults.get(settings::newsPoppedUpOnce)) << "asked for by hand";
    news->launchNews(true);
    main.advance(3.1);
    EXPECT_TRUE(defaults.get(settings::newsPoppedUpOnce));
}

TEST_F(NewsTest, TellsItsVersionOnlyIfThatIsWanted) {
    defaults.set(settings::newsReportVersion, true);
    for (const auto& [from, asked] :
         {std::pair(u"http://a.example/news"_s, u"http://a.example/news/?version=1.2"_s),
          {u"http://a.example/news/"_s, u"http://a.example/news/?version=1.2"_s},
          {u"http://a.example/news.html"_s, u"http://a.example/news.html?version=1.2"_s}}) {
        web.asked.clear();
        const auto news = make(from);
        news->launchNews(true);
        main.advance(day);
        EXPECT_THAT(web.asked, ElementsAre(asked, asked));
    }
}

}  // namespace
