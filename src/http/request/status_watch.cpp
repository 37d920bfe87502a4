#include "http/request/status_watch.h"

#include "http/extras/request_extras.h"
#include "http/http_request.h"
#include "http/http_request_error.h"
#include "http/request/connection_lease.h"
#include "http/request/request_run.h"
#include "http/request/request_state.h"
#include "http/request/time_out_rule.h"
#include "http/request/transfer_stream.h"
#include "http/shared/shared_state.h"

namespace http {

using namespace Qt::Literals::StringLiterals;

StatusWatch::StatusWatch(HTTPRequest& request, RequestParts parts, RequestRun& run)
    : request_(request), parts_(parts), run_(run) {}

void StatusWatch::start() {
    run_.loopInUse()->ticker().start(this, [this, request = request_.weak_from_this()] {
        const auto alive = request.lock();
        if (alive == nullptr)
            return;
        const std::scoped_lock guard(parts_.state.cancelledLock);
        checkRequestStatus();
        if (!parts_.state.isInProgress())
            stop();
    });
}

void StatusWatch::stop() {
    const auto& loop = run_.loopInUse();
    if (loop != nullptr && !loop->isClosed())
        loop->ticker().stop(this);
}

void StatusWatch::checkRequestStatus() {
    const RequestState& state = parts_.state;
    if (state.phase != RequestPhase::Transferring)
        return;
    parts_.stream.performThrottling();
    if (hasTimedOut()) {
        timeOut();
        return;
    }
    if (parts_.stream.exists() && state.postLength > 0)
        countUpload();
    run_.delivery().tellStored();
    parts_.extras.timePasses();
}

bool StatusWatch::hasTimedOut() const {
    const RequestState& state = parts_.state;
    Silence silence;
    silence.isScheduled = parts_.stream.exists() && parts_.stream.readStreamIsScheduled();
    if (state.lastActivityTime)
        silence.sinceLastActivity = parts_.shared.clock.monotonic() - *state.lastActivityTime;
    silence.timeOutSeconds = state.options.timeOutSeconds;
    silence.postLength = state.postLength;
    silence.uploadBufferSize = state.uploadBufferSize;
    silence.totalBytesSent = state.totalBytesSent;
    return shouldTimeOut(silence);
}

void StatusWatch::timeOut() {
    RequestState& state = parts_.state;
    if (state.retryCount >= state.options.numberOfTimesToRetryOnTimeout) {
        run_.failWithError(timedOutError());
        run_.cancelLoad();
        return;
    }
    if (const auto error = parts_.extras.sendIsRepeated()) {
        run_.failWithError(*error);
        return;
    }
    ++state.retryCount;
    // The silent exchange would keep its connection busy for ever.
    parts_.stream.destroy();
    parts_.connection.giveUp();
    run_.startRequest();
}

void StatusWatch::countUpload() {
    RequestState& state = parts_.state;
    state.lastBytesSent = state.totalBytesSent;
    state.totalBytesSent = parts_.stream.bodyBytesWritten();
    if (state.totalBytesSent <= state.lastBytesSent)
        return;
    state.lastActivityTime = parts_.shared.clock.monotonic();
    parts_.shared.bandwidth.incrementBandwidthUsedInLastSecond(state.totalBytesSent -
                                                               state.lastBytesSent);
}

}  // namespace http
