#include "engine/transfer/transfer.h"
#include "engine_fixture.h"
#include "support/test_worker.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;

using support::TestWorker;

TEST_F(EngineTest, WorkersAddUp) {
    const Context& context = owner.queue.context();
    const auto whole = TestWorker::make(context, 0, 0, 0);
    const auto part = TestWorker::make(context, 600, 0, 999);
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

    const auto resumed = TestWorker::make(context, 0, 100, 599);
    const auto resumedPart = TestWorker::make(context, 600, 50, 999);
    resumed->receive(10);
    figures = overallFigures({resumed, resumedPart}, nullptr, true);
    EXPECT_EQ(std::tuple(figures.downloaded, figures.offset, figures.expected),
              std::tuple(10, 150, 1000));
    const auto endless = TestWorker::make(context, 0, 0, 0);
    endless->receive(70);
    EXPECT_EQ(overallFigures({endless}, nullptr, false).expected, 70);
}

class ProgressTest : public EngineTest {
protected:
    void begin(qint64 length) {
        download->becomeDownloading();
        worker->answer(length);
        download->transfer().addWorker(worker);
    }
    void receive(qint64 count) {
        worker->receive(count);
        static_cast<void>(download->transfer().noteReceivedBytes(*worker));
    }

    const DownloadPtr download = owner.add(u"http://example.org/a"_s);
    const std::shared_ptr<TestWorker> worker = TestWorker::make(owner.queue.context());
};

/// With a length or without one.
TEST_F(ProgressTest, ListIsToldTenTimesASecond) {
    for (const qint64 length : {1'000'000'000, 0}) {
        begin(length);
        const int before = owner.updates;
        for (int block = 0; block < 1000; ++block) {
            main.clock.advance(0.001);
            receive(1000);
        }
        EXPECT_NEAR(owner.updates - before, 10, 1) << length;
        download->pause();
    }
}

}  // namespace
}  // namespace engine_test
