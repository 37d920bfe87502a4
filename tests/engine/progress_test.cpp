#include "engine/acceleration/acceleration_settings.h"
#include "engine/lifecycle/transfer.h"
#include "engine/record/download_dates.h"
#include "engine/settings.h"
#include "engine/workers/download_worker_prototype.h"
#include "engine_fixture.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;

/// Receives what a test tells it to.
class TestWorker final : public DQDownloadWorkerPrototype {
public:
    [[nodiscard]] static std::shared_ptr<TestWorker> make(qint64 start, qint64 resume, qint64 end) {
        auto worker = std::make_shared<TestWorker>();
        worker->setFractionStartByte(start);
        worker->setResumeByteOffset(resume);
        worker->setEndByte(end);
        return worker;
    }
    void answer(qint64 length) { processResponse({}, length); }
    void receive(qint64 count) { processDownloadedBytes(count); }

protected:
    [[nodiscard]] Pointer makeAnother() const override { return std::make_shared<TestWorker>(); }
    [[nodiscard]] bool startWithRequest(const WorkerRequest&, const QString&,
                                        platform::Seconds) override {
        return true;
    }
    void forgetTarget() override {}
};

TEST(OverallFiguresTest, WorkersAddUp) {
    const auto whole = TestWorker::make(0, 0, 0);
    const auto part = TestWorker::make(600, 0, 999);
    EXPECT_EQ(overallFigures({}, nullptr, true).expected, 0);
    whole->answer(1000);
    whole->receive(500);
    part->receive(100);
    OverallFigures figures = overallFigures({whole, part}, whole.get(), true);
    EXPECT_EQ(std::tuple(figures.downloaded, figures.offset, figures.expected, figures.truncation),
              std::tuple(600, 0, 1000, 0));
    whole->receive(150);
    EXPECT_EQ(overallFigures({whole, part}, whole.get(), true).truncation, 600);
    EXPECT_EQ(overallFigures({whole, part}, whole.get(), false).truncation, 0);
    EXPECT_EQ(overallFigures({whole, part}, part.get(), true).truncation, 0);
    EXPECT_EQ(overallFigures({whole}, whole.get(), true).truncation, 0);

    const auto resumed = TestWorker::make(0, 100, 599);
    const auto resumedPart = TestWorker::make(600, 50, 999);
    resumed->receive(10);
    figures = overallFigures({resumed, resumedPart}, nullptr, true);
    EXPECT_EQ(std::tuple(figures.downloaded, figures.offset, figures.expected),
              std::tuple(10, 150, 1000));
    const auto endless = TestWorker::make(0, 0, 0);
    endless->receive(70);
    EXPECT_EQ(overallFigures({endless}, nullptr, false).expected, 70);
}

class ProgressTest : public EngineTest {
protected:
    ProgressTest() {
        download->setStatus(DQDownloadStatusDownloading);
        worker->answer(1'000'000'000);
        download->transfer().addWorker(worker);
        download->dates().invalidateDownloadDate(true);
    }
    void receive(qint64 count) {
        worker->receive(count);
        static_cast<void>(download->transfer().noteReceivedBytes(*worker));
    }
    QString text() { return download->statusDescriptionWithLiveDetails(true); }

    const DownloadPtr download = manager.add(u"http://example.org/a"_s);
    const std::shared_ptr<TestWorker> worker = TestWorker::make(0, 0, 0);
};

TEST_F(ProgressTest, TextTellsBytesSpeedAndTimeLeft) {
    EXPECT_EQ(text(), u"- of 1 GB"_s);
    receive(30'000'000);
    EXPECT_EQ(text(), u"30 MB of 1 GB"_s);
    main.clock.advance(10);
    EXPECT_EQ(text(), u"30 MB of 1 GB at 3 MB/s - 5:23 remaining"_s);
    EXPECT_EQ(download->statusDescriptionWithLiveDetails(false), u"Downloading: 3%"_s);
    receive(970'000'000);
    EXPECT_EQ(text(), u"1 GB at 100 MB/s"_s);
}

TEST_F(ProgressTest, SpeedFollowsTheLastHalfMinute) {
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

TEST_F(ProgressTest, ListIsToldTenTimesASecond) {
    const int before = manager.updates;
    for (int block = 0; block < 1000; ++block) {
        main.clock.advance(0.001);
        receive(1000);
    }
    EXPECT_NEAR(manager.updates - before, 10, 1);
}

TEST_F(EngineTest, StatusTextsOfWhatDoesNotRun) {
    const auto download = manager.add(u"http://example.org/a"_s);
    const auto text = [&](bool live) { return download->statusDescriptionWithLiveDetails(live); };
    EXPECT_EQ(text(true), u"Pending"_s);
    AccelerationSettings::setAccelerates(true);
    EXPECT_EQ(text(true), u"Pending — Accelerate"_s);
    EXPECT_EQ(text(false), u"Pending"_s);
    download->userSettings().set(keys::responseURL, u"http://example.org/a"_s);
    EXPECT_EQ(text(true), u"Paused"_s);
    download->setIsInterrupted(true);
    EXPECT_EQ(text(true), u"Interrupted"_s);
    download->setStatus(DQDownloadStatusAborted);
    EXPECT_EQ(text(true), u"Aborted"_s);
    download->userSettings().set(keys::statusCode, 503);
    EXPECT_EQ(text(false), u"Aborted — 503"_s);
    download->setStatus(DQDownloadStatusDone);
    EXPECT_EQ(text(true), u"Complete — just now"_s);
    EXPECT_EQ(download->downloadCompletionFraction(), 1);
}

}  // namespace
}  // namespace engine_test
