#include "app/addresses/address_change.h"
#include "app/details/connections.h"
#include "app/details/download_facts.h"
#include "core_fixture.h"
#include "engine/settings.h"
#include "engine/transfer/speed_limit.h"
#include "support/test_worker.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace engine;
using support::TestWorker;

class DetailsTest : public Core {
protected:
    DetailsTest() {
        add({u"a"_s});
        one = download(u"a"_s);
    }
    app::Rows& rows() { return controller->rows(); }
    /// Empty: it is not among the facts.
    QString fact(const QString& label) {
        for (const app::Fact& known :
             app::downloadFacts(*download(u"a"_s), rows().texts(), rows().attempts())) {
            if (known.label == label)
                return known.value;
        }
        return {};
    }
    std::shared_ptr<TestWorker> run(qint64 length) {
        one->becomeDownloading();
        const auto worker = TestWorker::make(controller->queue().context());
        worker->answer(length);
        one->transfer().addWorker(worker);
        return worker;
    }

    DownloadPtr one;
};

TEST_F(DetailsTest, TellsWhyAttemptsFailedAlsoOfTheRecordThatTriesAgain) {
    one->becomeDownloading();
    one->userSettings().set(keys::statusCode, 404);
    end(*one, DQDownloadStatusAborted);
    controller->retry({one});
    setStatus(*download(u"a"_s), DQDownloadStatusDownloading);
    const auto attempts = rows().attempts().attempts(*download(u"a"_s));
    ASSERT_EQ(attempts.size(), 2U);
    EXPECT_EQ(attempts[0].what, u"The server does not have this file."_s);
    EXPECT_EQ(attempts[1].what, u"Tried again"_s);

    setStatus(*download(u"a"_s), DQDownloadStatusPaused);
    EXPECT_EQ(rows().attempts().attempts(*download(u"a"_s)).size(), 2U) << "that is no trouble";

    static_cast<void>(savedQueue());
    restart();
    const auto kept = rows().attempts().attempts(*download(u"a"_s));
    ASSERT_EQ(kept.size(), 2U);
    EXPECT_EQ(kept[0].what, attempts[0].what);
    EXPECT_EQ(kept[1].when.toSecsSinceEpoch(), attempts[1].when.toSecsSinceEpoch());
    setStatus(*download(u"a"_s), DQDownloadStatusDownloading);
    EXPECT_EQ(rows().attempts().attempts(*download(u"a"_s)).size(), 3U);
}

TEST_F(DetailsTest, HidesPlacesWhileDownloadingInPrivate) {
    one->userSettings().set(keys::page, u"http://page.example/"_s);
    EXPECT_EQ(fact(u"Address"_s), address(u"a"_s));
    EXPECT_EQ(fact(u"Found on"_s), u"http://page.example/"_s);
    defaults.set(engine::settings::privateDownloading, true);
    const QString all = app::plainText(app::downloadFacts(*one, rows().texts(), rows().attempts()));
    EXPECT_FALSE(all.contains(u"example"_s)) << qPrintable(all);
}

TEST_F(DetailsTest, KnowsTheSpeedOfTheLastMinutes) {
    const auto worker = run(1'000'000);
    const auto pass = [&](int seconds, qint64 bytes) {
        for (int second = 0; second < seconds; ++second) {
            main.clock.advance(1);
            worker->receive(bytes);
            progress(*one);
        }
    };
    progress(*one);
    pass(10, 1000);
    pass(5, 3000);
    main.clock.advance(2);
    EXPECT_DOUBLE_EQ(rows().speeds().rates(*one, main.clock.monotonic()).back(), 3000);
    main.clock.advance(18);
    const auto rates = rows().speeds().rates(*one, main.clock.monotonic());
    ASSERT_EQ(rates.size(), 180U);
    EXPECT_EQ(rates[180 - 36], 0) << "before it began";
    EXPECT_DOUBLE_EQ(rates[180 - 30], 1000);
    EXPECT_DOUBLE_EQ(rates[180 - 22], 3000);
    EXPECT_EQ(rates.back(), 0) << "it has stalled";
    main.clock.advance(180);
    EXPECT_TRUE(rows().speeds().rates(*one, main.clock.monotonic()).empty());
}

TEST_F(DetailsTest, KnowsThatSomethingCameThoughItWasOverSoon) {
    const auto worker = run(1'000'000);
    progress(*one);
    for (int step = 0; step < 3; ++step) {
        main.clock.advance(0.2);
        worker->receive(10'000);
        progress(*one);
    }
    // Its worker has gone before its end is known.
    one->transfer().dropWorkers();
    progress(*one);
    setStatus(*one, DQDownloadStatusPaused);
    main.clock.advance(10);
    const auto rates = rows().speeds().rates(*one, main.clock.monotonic());
    ASSERT_FALSE(rates.empty());
    EXPECT_NEAR(*std::max_element(rates.begin(), rates.end()), 50'000, 1);
}

TEST_F(DetailsTest, ShowsANewLimitSoonAndEvenly) {
    const auto worker = run(100'000'000);
    const auto gust = [&](qint64 bytes) {
        main.clock.advance(0.5);
        progress(*one);
        main.clock.advance(0.6);
        worker->receive(bytes);
        static_cast<void>(one->transfer().noteReceivedBytes(*worker));
        progress(*one);
    };
    for (int count = 0; count < 40; ++count)
        gust(1'000'000);
    one->speedLimit().set(100'000);
    gust(5'000'000);  // Was on its way.
    for (int count = 0; count < 10; ++count)
        gust(110'000);
    const auto span = one->speed(main.clock.monotonic());
    ASSERT_TRUE(span);
    EXPECT_NEAR(span->bytes / span->seconds, 100'000, 1);
    const auto rates = rows().speeds().rates(*one, main.clock.monotonic());
    EXPECT_NEAR(*std::min_element(rates.end() - 8, rates.end()), 100'000, 1);
    EXPECT_NEAR(*std::max_element(rates.end() - 8, rates.end()), 100'000, 1);
}

TEST_F(DetailsTest, TellsWhatEachConnectionCarries) {
    const auto first = run(1000);
    one->userSettings().set(keys::expectedBytes, 1000);
    const auto second = TestWorker::make(controller->queue().context(), 600, 100, 999);
    one->transfer().addWorker(second);
    app::ConnectionMeter meter;
    static_cast<void>(meter.connections(*one, main.clock.monotonic()));
    first->receive(150);
    main.clock.advance(1);
    const auto found = meter.connections(*one, main.clock.monotonic());
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].end, 599) << "though it has asked for all";
    EXPECT_DOUBLE_EQ(found[0].fraction(), 0.25);
    EXPECT_EQ(found[0].perSecond, 150);
    EXPECT_EQ(found[1].arrived, 100);
    EXPECT_EQ(found[1].state, app::Connection::State::Waiting);
}

TEST_F(DetailsTest, ComparesTheFilesOfTwoAddresses) {
    using Verdict = AddressAnswer::Verdict;
    KnownFile known, found;
    EXPECT_EQ(compareFiles(known, found, false), Verdict::CannotTell);
    known.length = found.length = 1000;
    known.entityTag = u"\"of one mirror\""_s;
    found.entityTag = u"\"of another\""_s;
    EXPECT_EQ(compareFiles(known, found, false), Verdict::SameFile);
    EXPECT_EQ(compareFiles(known, found, true), Verdict::OtherFile);
    found.length = 999;
    found.entityTag = known.entityTag;
    EXPECT_EQ(compareFiles(known, found, false), Verdict::OtherFile);
    found.length = 0;
    EXPECT_EQ(compareFiles(known, found, false), Verdict::SameFile);
    known.entityTag = found.entityTag = u"W/\"weak\""_s;
    EXPECT_EQ(compareFiles(known, found, false), Verdict::CannotTell);
}

TEST_F(DetailsTest, GivesANewServerNothingThatWasMeantForTheFormer) {
    const auto captured = [this] { return one->userSettings().value(keys::request).toMap(); };
    one->pause();
    one->userSettings().set(
        keys::request,
        QVariantMap{{keys::requestPartialHeaders,
                     QVariantMap{{u"cookie"_s, u"secret"_s}, {u"Accept"_s, u"*/*"_s}}}});
    one->userSettings().set(keys::unkeptCookies, u"secret"_s);
    takeNewAddress(*one, *platform::Url::parse(u"http://a.example/b"_s), std::nullopt);
    EXPECT_EQ(one->userSettings().string(keys::unkeptCookies), u"secret"_s) << "the same server";

    app::changeAddress(*controller, one, *platform::Url::parse(u"http://mirror.example/a"_s), {});
    EXPECT_EQ(one->originalURLString(), u"http://mirror.example/a"_s);
    EXPECT_FALSE(one->userSettings().contains(keys::unkeptCookies));
    EXPECT_EQ(captured().value(keys::requestPartialHeaders).toMap().keys(),
              QStringList{u"Accept"_s});
    EXPECT_EQ(savedURLs(), QStringList{u"http://mirror.example/a"_s});
}

}  // namespace
