#include "engine/queue/queue_admission.h"

#include <random>
#include <tuple>

#include "engine/settings.h"
#include "engine_fixture.h"

using namespace Qt::Literals::StringLiterals;

namespace engine_test {
namespace {

using namespace engine;

/// Says of every address that it is a page, so that downloads start and stay without a transfer.
class NeverRead final : public PageReader {
public:
    [[nodiscard]] bool isDownloadPageURL(const platform::Url&) const override { return true; }
    [[nodiscard]] std::optional<QString> preservedNamePattern(const platform::Url&) const override {
        return std::nullopt;
    }
    void URLsFromDownloadPageWithTitle(const platform::Url&,
                                       std::function<void(links::ExtractedLinks)>) const override {}
};

class QueueAdmissionTest : public EngineTest {
protected:
    QueueAdmissionTest() {
        environment.pageReader = std::make_shared<NeverRead>();
        environment.isModalWindowUp = [isUp = isModalWindowUp] { return *isUp; };
    }

    /// A letter is a host; a dash has none.
    void queue(const char* hosts) {
        for (; *hosts != '\0'; ++hosts)
            owner.add(*hosts == '-' ? u"file:///x"_s
                                    : u"http://%1.example/x"_s.arg(QChar::fromLatin1(*hosts)),
                      true);
    }
    /// Of each download, 'r' if it runs, '.' if it waits.
    [[nodiscard]] std::string states() const {
        std::string text;
        for (const auto& download : downloads())
            text += download->status() == DQDownloadStatusDownloading ? 'r' : '.';
        return text;
    }

    /// Asked also while the fixture below is taken down.
    const std::shared_ptr<bool> isModalWindowUp = std::make_shared<bool>(false);
};

TEST_F(QueueAdmissionTest, LimitsDecideWhoStarts) {
    struct Case {
        const char* hosts;
        qint64 limit, perHost;
        const char* states;
    };
    const Case cases[] = {
        {"aaaaa", 4, 2, "rr..."}, {"aaab", 4, 2, "rr.r"},   {"abcde", 4, 2, "rrrr."},
        {"aaaaa", 4, 0, "rrrr."}, {"aabb", 4, -1, "rrrr"},  {"abcdefghijkl", 10, 1, "rrrrrrrrrrrr"},
        {"abc", 0, 2, "rrr"},     {"----a", 3, 1, "rrr.."}, {"a-a", 4, 1, "rr."},
        {"abc", 1, 1, "r.."},
    };
    for (const Case& c : cases) {
        set(settings::numberOfConcurrentDownloads, c.limit);
        set(settings::numberOfConcurrentDownloadsPerHost, c.perHost);
        queue(c.hosts);
        EXPECT_EQ(states(), std::string(downloads().size(), '.'));
        main.settle();
        EXPECT_EQ(states(), c.states) << c.hosts << ' ' << c.limit << ' ' << c.perHost;
        clearQueue();
    }
}

/// What is kept up while downloads start, end, pause and go on is what a walk over all would find.
TEST_F(QueueAdmissionTest, ListsFollowEachStatus) {
    queue("abcabcabcabc");
    set(settings::numberOfConcurrentDownloads, qint64{0});
    QueueAdmission& admission = owner.queue.admission();
    std::mt19937 random(7);
    for (int step = 0; step < 400; ++step) {
        const DownloadPtr download = downloads()[random() % downloads().size()];
        if (download->status() == DQDownloadStatusQueued && random() % 2 == 0)
            download->startDownload();
        else
            download->changeStatus(DQDownloadStatus(1 << random() % 5), StatusCause::Paused);
        const std::deque<DownloadPtr> queued = admission.queuedDownloads();
        const std::vector<DownloadPtr> downloading = admission.downloadingDownloads();
        const auto [index, host, hostIndex] = admission.positionOfQueuedDownload(*download);
        admission.invalidateQueuedAndDownloadingDownloads();
        ASSERT_EQ(queued, admission.queuedDownloads()) << step;
        ASSERT_EQ(downloading, admission.downloadingDownloads()) << step;
        const auto again = admission.positionOfQueuedDownload(*download);
        ASSERT_EQ(std::tie(index, host, hostIndex),
                  std::tie(again.index, again.host, again.hostIndex))
            << step;
    }
}

TEST_F(QueueAdmissionTest, FreedSlotIsTaken) {
    queue("aaa");
    main.settle();
    downloads()[0]->togglePause();
    EXPECT_EQ(states(), ".r.");
    main.settle();
    EXPECT_EQ(states(), ".rr");
    EXPECT_EQ(owner.changes.back().second, StatusCause::Started);
    EXPECT_EQ(owner.changes[owner.changes.size() - 2].second, StatusCause::PausedByUser);
    downloads()[0]->startDownload();
    EXPECT_EQ(states(), "rrr");
}

TEST_F(QueueAdmissionTest, ModalWindowHoldsEverythingBack) {
    *isModalWindowUp = true;
    queue("a");
    main.advance(5.5);
    EXPECT_EQ(states(), ".");
    *isModalWindowUp = false;
    main.advance(1);
    EXPECT_EQ(states(), "r");
}

TEST_F(QueueAdmissionTest, ChangedLimitStartsAPass) {
    set(settings::numberOfConcurrentDownloads, qint64{1});
    queue("ab");
    main.settle();
    EXPECT_EQ(states(), "r.");
    owner.queue.admission().setNumberOfConcurrentDownloads(2);
    main.settle();
    EXPECT_EQ(states(), "rr");
}

TEST_F(QueueAdmissionTest, HostIsTheLastTwoLabels) {
    const std::pair<QString, QString> cases[] = {
        {u"http://a.b.Example.ORG/x"_s, u"example.org"_s},
        {u"http://b.co.uk/"_s, u"co.uk"_s},
        {u"http://example.org/"_s, u"example.org"_s},
        {u"http://192.168.1.20/"_s, u"192.168.1.20"_s},
        {u"http://localhost/"_s, u"localhost"_s},
        {u"http://[::1]/"_s, u"::1"_s},
        {u"file:///x"_s, u""_s},
    };
    for (const auto& [url, host] : cases)
        EXPECT_EQ(owner.add(url)->queueRelevantHost(), host) << url.toStdString();
}

}  // namespace
}  // namespace engine_test
