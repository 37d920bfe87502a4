#include "http/http_body_store.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>

#include "http/request/body_storage.h"
#include "http_fixture.h"
#include "platform/base/thread_pool.h"

namespace http_test {
namespace {

using namespace Qt::Literals::StringLiterals;
using support::Reply;

/// Keeps what it is given; waits like a disk that does not answer while it is stuck.
class SlowStore final : public http::HTTPBodyStore {
public:
    explicit SlowStore(platform::ThreadPool& disk) : disk_(disk) {}

    [[nodiscard]] platform::ThreadPool& writesOfDisk() const override { return disk_; }
    bool store(const QByteArray& block) override {
        std::unique_lock guard(lock_);
        changed_.wait(guard, [&] { return !isStuck_; });
        if (data_.size() + block.size() > room_)
            return false;
        data_.append(block.constData(), block.size());
        return true;
    }
    void setStuck(bool isStuck) {
        const std::scoped_lock guard(lock_);
        isStuck_ = isStuck;
        changed_.notify_all();
    }
    void setRoom(qsizetype room) { room_ = room; }
    [[nodiscard]] QByteArray data() const {
        const std::scoped_lock guard(lock_);
        return data_;
    }

private:
    mutable std::mutex lock_;
    std::condition_variable changed_;
    bool isStuck_ = false;
    platform::ThreadPool& disk_;
    qsizetype room_ = std::numeric_limits<qsizetype>::max();
    QByteArray data_;
};

class BodyStoreTest : public HTTPTest {
protected:
    BodyStoreTest() {
        server.serve("/large", {.body = body});
        delegate.does.receivesData = delegate.does.suppliesBodyStore = true;
        delegate.onEvent = [this](const std::string& event, http::HTTPRequest& request) {
            if (event == "data")
                request.setBodyStore(store);
        };
    }
    ~BodyStoreTest() override { store->setStuck(false); }

    const QByteArray body = support::patternedBytes(24 << 20);
    platform::ThreadPool disk{1};
    std::shared_ptr<SlowStore> store = std::make_shared<SlowStore>(disk);
};

TEST_F(BodyStoreTest, TakesWhatFollowsTheFirstBytesAndTellsHowMuchThatIs) {
    run(observedRequest(u"/large"_s));
    EXPECT_GT(delegate.data.size(), 0);
    EXPECT_LE(delegate.data.size(), 256 << 10);
    EXPECT_EQ(delegate.data + store->data(), body);
    EXPECT_EQ(delegate.stored, store->data().size());
    EXPECT_EQ(delegate.events,
              (std::vector<std::string>{"started", "headers", "data", "finished"}));
}

TEST_F(BodyStoreTest, StuckDiskHoldsBackItsTransferAndNoOther) {
    store->setStuck(true);
    const auto request = observedRequest(u"/large"_s);
    request->startAsynchronous();
    ASSERT_TRUE(main.waitUntil([&] { return request->totalBytesRead() >= 4U << 20; }));
    ASSERT_TRUE(waitForRest());
    EXPECT_LE(request->totalBytesRead(), (4U << 20) + (512U << 10));
    // Rest is no silence: the time-out does not count.
    advance(30);

    RecordingDelegate second;
    platform::ThreadPool elsewhere(1);
    const auto otherDisk = std::make_shared<SlowStore>(elsewhere);
    second.does = delegate.does;
    second.onEvent = [&](const std::string& event, http::HTTPRequest& other) {
        if (event == "data")
            other.setBodyStore(otherDisk);
    };
    const auto other = this->request(u"/large"_s);
    other->setDelegate(&second);
    run(other);
    EXPECT_EQ(second.data + otherDisk->data(), body);
    EXPECT_FALSE(delegate.hasEnded());

    store->setStuck(false);
    ASSERT_TRUE(waitForEnd());
    EXPECT_FALSE(request->error());
    EXPECT_EQ(delegate.data + store->data(), body);
}

TEST_F(BodyStoreTest, TransfersTakeTurnsAtTheirDisk) {
    std::vector<char> order;
    std::mutex lock;
    const auto storage = [&](const std::shared_ptr<SlowStore>& to, char name) {
        http::BodyStorage::Receiver receiver;
        receiver.stored = [&, name](qsizetype) {
            const std::scoped_lock guard(lock);
            order.push_back(name);
        };
        return std::make_shared<http::BodyStorage>(disk, to, receiver);
    };
    store->setStuck(true);
    const auto greedy = storage(store, 'g');
    const auto other = storage(std::make_shared<SlowStore>(disk), 'o');
    for (int block = 0; block < 12; ++block)
        static_cast<void>(greedy->add("block", [] {}));
    static_cast<void>(other->add("block", [] {}));
    store->setStuck(false);
    disk.waitForDone();
    ASSERT_EQ(order.size(), 13U);
    EXPECT_LE(std::find(order.begin(), order.end(), 'o') - order.begin(), 4);
}

TEST_F(BodyStoreTest, EndIsToldBehindWhatIsStillBeingStored) {
    for (const bool isCutShort : {false, true}) {
        SCOPED_TRACE(isCutShort);
        Reply reply{.body = body.first(1 << 20)};
        if (isCutShort)
            reply.cutAfter = 900'000;
        server.serve("/short", reply);
        delegate.events.clear();
        delegate.data.clear();
        delegate.blocks = 0;
        delegate.stored = 0;
        store = std::make_shared<SlowStore>(disk);
        store->setStuck(true);
        const auto request = observedRequest(u"/short"_s);
        request->startAsynchronous();
        const auto expected = static_cast<std::uint64_t>(isCutShort ? 900'000 : 1 << 20);
        ASSERT_TRUE(main.waitUntil([&] { return request->totalBytesRead() == expected; }));
        advance(30);
        EXPECT_FALSE(delegate.hasEnded());
        store->setStuck(false);
        ASSERT_TRUE(waitForEnd());
        EXPECT_EQ(delegate.count("failed"), isCutShort ? 1 : 0);
        EXPECT_EQ(static_cast<std::uint64_t>(delegate.data.size() + delegate.stored), expected);
        EXPECT_EQ(delegate.data + store->data(),
                  body.first(delegate.data.size() + delegate.stored));
    }
}

TEST_F(BodyStoreTest, DelegateIsGivenInOrderWhatTheStoreRefuses) {
    store->setRoom(3 << 20);
    qsizetype storedAtRefusal = -1;
    delegate.onBlock = [&](int number) {
        if (number == 2)
            storedAtRefusal = delegate.stored;
    };
    run(observedRequest(u"/large"_s));
    EXPECT_EQ(storedAtRefusal, store->data().size());
    EXPECT_GT(storedAtRefusal, 2 << 20);
    const qsizetype first = body.indexOf(store->data());
    EXPECT_EQ(delegate.data.first(first) + store->data() + delegate.data.sliced(first), body);
}

TEST_F(BodyStoreTest, IsForgottenWithItsBody) {
    server.serve("/moved", {.status = 302,
                            .headers = {{"Location", "/large"}},
                            .body = support::patternedBytes(60'000, 2),
                            .stallAfter = 30'000});
    const auto supplyStore = delegate.onEvent;
    delegate.onEvent = [&](const std::string& event, http::HTTPRequest& request) {
        supplyStore(event, request);
        if (event == "data")
            server.release();
    };
    run(observedRequest(u"/moved"_s));
    EXPECT_EQ(delegate.data.size() + store->data().size(), body.size() + 60'000);
    EXPECT_FALSE(store->data().isEmpty());
    EXPECT_TRUE(delegate.data.endsWith(body));
}

}  // namespace
}  // namespace http_test
