#include "http/request/status_watch.h"

#include "http/http_request.h"
#include "http/http_request_error.h"
#include "http/request/connection_lease.h"
#include "http/request/file_output.h"
#include "http/request/progress_reporter.h"
#include "http/request/request_run.h"
#include "http/request/request_state.h"
#include "http/request/time_out_rule.h"
#include "http/request/transfer_stream.h"
#include "http/shared/shared_state.h"

namespace http {

using namespace Qt::Literals::StringLiterals;

StatusWatch::StatusWatch(HTTPRequest& request, RequestParts parts, RequestRun& run)
    : _request(request), _parts(parts), _run(run) {}

void StatusWatch::start() {
    _run.loopInUse()->ticker().start(this, [this, request = _request.weak_from_this()] {
        const auto alive = request.lock();
        if (alive == nullptr)
            return;
        const std::scoped_lock guard(_parts.state.cancelledLock);
        checkRequestStatus();
        if (!_parts.state.inProgress)
            stop();
    });
}

void StatusWatch::stop() {
    const auto& loop = _run.loopInUse();
    if (loop != nullptr && !loop->isClosed())
        loop->ticker().stop(this);
}

void StatusWatch::checkRequestStatus() {
    const RequestState& state = _parts.state;
    if (state.cancelled || state.complete)
        return;
    _parts.stream.performThrottling();
    if (hasTimedOut()) {
        timeOut();
        return;
    }
    if (_parts.stream.exists() && state.postLength > 0)
        countUpload();
    _run.delivery().tellStored();
    _parts.progress.updateProgressIndicators();
}

bool StatusWatch::hasTimedOut() const {
    const RequestState& state = _parts.state;
    Silence silence;
    silence.isScheduled = _parts.stream.exists() && _parts.stream.readStreamIsScheduled();
    if (state.lastActivityTime)
        silence.sinceLastActivity = _parts.shared.clock.monotonic() - *state.lastActivityTime;
    silence.timeOutSeconds = state.options.timeOutSeconds;
    silence.postLength = state.postLength;
    silence.uploadBufferSize = state.uploadBufferSize;
    silence.totalBytesSent = state.totalBytesSent;
    return shouldTimeOut(silence);
}

void StatusWatch::timeOut() {
    RequestState& state = _parts.state;
    if (state.retryCount >= state.options.numberOfTimesToRetryOnTimeout) {
        _run.failWithError(timedOutError());
        _run.cancelLoad();
        return;
    }
    _parts.file.close();
    if (const auto error = updatePartialDownloadSize(state)) {
        _run.failWithError(*error);
        return;
    }
    if (state.partialDownloadSize > 0)
        state.request->headers.set(u"Range"_s, rangeFrom(state.partialDownloadSize));
    ++state.retryCount;
    // The silent exchange would keep its connection busy for ever.
    _parts.stream.destroy();
    _parts.connection.giveUp();
    _run.startRequest();
}

void StatusWatch::countUpload() {
    RequestState& state = _parts.state;
    state.lastBytesSent = state.totalBytesSent;
    state.totalBytesSent = _parts.stream.bodyBytesWritten();
    if (state.totalBytesSent <= state.lastBytesSent)
        return;
    state.lastActivityTime = _parts.shared.clock.monotonic();
    _parts.shared.bandwidth.incrementBandwidthUsedInLastSecond(state.totalBytesSent -
                                                               state.lastBytesSent);
}

}  // namespace http
