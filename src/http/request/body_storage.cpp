#include "http/request/body_storage.h"

#include <utility>

#include "http/http_body_store.h"
#include "platform/base/thread_pool.h"

namespace http {

namespace {

constexpr qsizetype wholeBlock = qsizetype{256} << 10;
constexpr qsizetype mostUntold = qsizetype{1} << 20;
constexpr int blocksInATurn = 4;

}  // namespace

BodyStorage::BodyStorage(platform::ThreadPool& pool, std::shared_ptr<HTTPBodyStore> store,
                         Receiver receiver)
    : pool_(pool), store_(std::move(store)), receiver_(std::move(receiver)) {}

BodyStorage::~BodyStorage() = default;

bool BodyStorage::add(QByteArray data, const Call& caughtUp) {
    const qsizetype count = data.size();
    const auto receipt = waiting_.put(std::move(data), count, caughtUp);
    if (receipt.mustWake)
        pool_.start([self = shared_from_this()] { self->work(); });
    return receipt.isWithinLimit;
}

bool BodyStorage::callWhenIdle(Call call) {
    const bool isWorking = waiting_.callWhenIdle([this, call = std::move(call)] {
        tellStored();
        call();
    });
    if (!isWorking)
        tellStored();
    return isWorking;
}

void BodyStorage::tellStored() {
    if (const qsizetype count = untold_.exchange(0); count > 0)
        receiver_.stored(count);
}

/// A little at a time: others write to the same disk, and a fast stream never runs dry.
void BodyStorage::work() {
    for (int block = 0; block < blocksInATurn; ++block) {
        auto data = waiting_.take();
        if (!data)
            return;
        store(*data);
        const qsizetype count = data->size();
        // Free to be filled again before more is let in.
        data.reset();
        waiting_.letGo(count);
    }
    pool_.start([self = shared_from_this()] { self->work(); });
}

void BodyStorage::store(const QByteArray& data) {
    isRefused_ = isRefused_ || !store_->store(data);
    if (isRefused_) {
        tellStored();
        receiver_.refused(data);
        return;
    }
    const bool isOfFastStream = data.size() >= wholeBlock;
    if (untold_.fetch_add(data.size()) + data.size() >= mostUntold || !isOfFastStream)
        tellStored();
}

}  // namespace http
