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
    : _pool(pool), _store(std::move(store)), _receiver(std::move(receiver)) {}

BodyStorage::~BodyStorage() = default;

bool BodyStorage::add(QByteArray data, const Call& caughtUp) {
    const std::scoped_lock guard(_lock);
    _bytes += data.size();
    _waiting.push_back(std::move(data));
    const bool isWithinLimit = _bytes < limit;
    if (!isWithinLimit)
        _caughtUp = caughtUp;
    if (!std::exchange(_isWorking, true))
        _pool.start([self = shared_from_this()] { self->work(); });
    return isWithinLimit;
}

bool BodyStorage::callWhenIdle(Call call) {
    {
        const std::scoped_lock guard(_lock);
        if (_isWorking) {
            _whenIdle = std::move(call);
            return true;
        }
    }
    tellStored();
    return false;
}

void BodyStorage::tellStored() {
    if (const qsizetype count = _untold.exchange(0); count > 0)
        _receiver.stored(count);
}

/// A little at a time: others write to the same disk, and a fast stream never runs dry.
void BodyStorage::work() {
    for (int block = 0; block < blocksInATurn; ++block) {
        QByteArray data = takeNext();
        if (data.isNull())
            return;
        store(data);
        const qsizetype count = data.size();
        // Free to be filled again before more is let in.
        data = QByteArray();
        letGo(count);
    }
    _pool.start([self = shared_from_this()] { self->work(); });
}

QByteArray BodyStorage::takeNext() {
    Call whenIdle;
    {
        const std::scoped_lock guard(_lock);
        if (!_waiting.empty()) {
            QByteArray data = std::move(_waiting.front());
            _waiting.pop_front();
            return data;
        }
        _isWorking = false;
        whenIdle = std::exchange(_whenIdle, nullptr);
    }
    if (whenIdle) {
        tellStored();
        whenIdle();
    }
    return {};
}

void BodyStorage::store(const QByteArray& data) {
    _isRefused = _isRefused || !_store->store(data);
    if (_isRefused) {
        tellStored();
        _receiver.refused(data);
        return;
    }
    const bool isOfFastStream = data.size() >= wholeBlock;
    if (_untold.fetch_add(data.size()) + data.size() >= mostUntold || !isOfFastStream)
        tellStored();
}

void BodyStorage::letGo(qsizetype count) {
    Call caughtUp;
    {
        const std::scoped_lock guard(_lock);
        _bytes -= count;
        if (_bytes <= limit / 2)
            caughtUp = std::exchange(_caughtUp, nullptr);
    }
    if (caughtUp)
        caughtUp();
}

}  // namespace http
