#include "http/request/body_delivery.h"

#include <utility>

#include "http/http_body_store.h"
#include "http/http_request.h"
#include "http/request/body_storage.h"
#include "http/request/request_notifier.h"
#include "http/request/request_run.h"
#include "http/request/request_state.h"
#include "http/request/transfer_stream.h"
#include "http/shared/shared_state.h"

namespace http {

BodyDelivery::BodyDelivery(HTTPRequest& request, RequestParts parts, RequestRun& run)
    : _request(request), _parts(parts), _run(run) {}

BodyDelivery::~BodyDelivery() = default;

void BodyDelivery::reset() {
    _hasBegun = false;
    _storage.reset();
}

void BodyDelivery::deliver(QByteArray data) {
    const bool waitsForStore = !std::exchange(_hasBegun, true) && isMoreExpected() &&
                               _parts.notifier.isBodyStoreSupplied();
    const bool isWithinLimit = passOn(std::move(data));
    if (waitsForStore || !isWithinLimit)
        _parts.stream.hold(TransferStream::Hold::Backlog);
    if (waitsForStore)
        _parts.notifier.callWhenTold(callWhenCaughtUp());
}

bool BodyDelivery::isMoreExpected() const {
    const RequestState& state = _parts.state;
    return state.contentLength == 0 || state.totalBytesRead < state.contentLength;
}

bool BodyDelivery::passOn(QByteArray data) {
    if (_storage != nullptr)
        return _storage->add(std::move(data), callWhenCaughtUp());
    return _parts.notifier.passOnReceivedData(std::move(data), callWhenCaughtUp());
}

const std::function<void()>& BodyDelivery::callWhenCaughtUp() {
    if (!_callWhenCaughtUp)
        _callWhenCaughtUp = [this, weak = _request.weak_from_this()] {
            if (const auto alive = weak.lock())
                _run.perform([this] { _parts.stream.letGo(TransferStream::Hold::Backlog); });
        };
    return _callWhenCaughtUp;
}

bool BodyDelivery::callWhenStored(std::function<void()> then) {
    return _storage != nullptr &&
           _storage->callWhenIdle([this, then = std::move(then), weak = _request.weak_from_this()] {
               if (const auto alive = weak.lock())
                   _run.perform(then);
           });
}

void BodyDelivery::tellStored() {
    if (_storage != nullptr)
        _storage->tellStored();
}

bool BodyDelivery::setStore(std::shared_ptr<HTTPBodyStore> store, const QByteArray& first) {
    BodyStorage::Receiver receiver;
    receiver.stored = [this, weak = _request.weak_from_this()](qsizetype count) {
        if (const auto alive = weak.lock())
            _parts.notifier.dataWasStored(count);
    };
    receiver.refused = [this, weak = _request.weak_from_this()](const QByteArray& data) {
        if (const auto alive = weak.lock())
            static_cast<void>(_parts.notifier.passOnReceivedData(data, nullptr));
    };
    const std::scoped_lock guard(_parts.state.cancelledLock);
    if (_parts.state.complete || _parts.state.downloadComplete)
        return false;
    auto& thread = store->writesOfDisk();
    _storage = std::make_shared<BodyStorage>(thread, std::move(store), std::move(receiver));
    // One block is within any limit.
    if (!first.isEmpty())
        static_cast<void>(_storage->add(first, callWhenCaughtUp()));
    return true;
}

}  // namespace http
