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
    : request_(request), parts_(parts), run_(run) {}

BodyDelivery::~BodyDelivery() = default;

void BodyDelivery::reset() {
    hasBegun_ = false;
    storage_.reset();
}

void BodyDelivery::deliver(QByteArray data) {
    const bool waitsForStore = !std::exchange(hasBegun_, true) && isMoreExpected() &&
                               parts_.notifier.isBodyStoreSupplied();
    const bool isWithinLimit = passOn(std::move(data));
    if (waitsForStore || !isWithinLimit)
        parts_.stream.hold(TransferStream::Hold::Backlog);
    if (waitsForStore)
        parts_.notifier.callWhenTold(callWhenCaughtUp());
}

bool BodyDelivery::isMoreExpected() const {
    const RequestState& state = parts_.state;
    return state.contentLength == 0 || state.totalBytesRead < state.contentLength;
}

bool BodyDelivery::passOn(QByteArray data) {
    if (storage_ != nullptr)
        return storage_->add(std::move(data), callWhenCaughtUp());
    return parts_.notifier.passOnReceivedData(std::move(data), callWhenCaughtUp());
}

const std::function<void()>& BodyDelivery::callWhenCaughtUp() {
    if (!callWhenCaughtUp_)
        callWhenCaughtUp_ = [this, weak = request_.weak_from_this()] {
            if (const auto alive = weak.lock())
                run_.perform([this] { parts_.stream.letGo(TransferStream::Hold::Backlog); });
        };
    return callWhenCaughtUp_;
}

bool BodyDelivery::callWhenStored(std::function<void()> then) {
    return storage_ != nullptr &&
           storage_->callWhenIdle([this, then = std::move(then), weak = request_.weak_from_this()] {
               if (const auto alive = weak.lock())
                   run_.perform(then);
           });
}

void BodyDelivery::tellStored() {
    if (storage_ != nullptr)
        storage_->tellStored();
}

bool BodyDelivery::setStore(std::shared_ptr<HTTPBodyStore> store, const QByteArray& first) {
    BodyStorage::Receiver receiver;
    receiver.stored = [this, weak = request_.weak_from_this()](qsizetype count) {
        if (const auto alive = weak.lock())
            parts_.notifier.dataWasStored(count);
    };
    receiver.refused = [this, weak = request_.weak_from_this()](const QByteArray& data) {
        if (const auto alive = weak.lock())
            static_cast<void>(parts_.notifier.passOnReceivedData(data, nullptr));
    };
    const std::scoped_lock guard(parts_.state.cancelledLock);
    if (parts_.state.isComplete())
        return false;
    auto& thread = store->writesOfDisk();
    storage_ = std::make_shared<BodyStorage>(thread, std::move(store), std::move(receiver));
    // One block is within any limit.
    if (!first.isEmpty())
        static_cast<void>(storage_->add(first, callWhenCaughtUp()));
    return true;
}

}  // namespace http
