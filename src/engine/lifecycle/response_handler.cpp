#include "engine/lifecycle/response_handler.h"

#include "engine/acceleration/accelerator.h"
#include "engine/context.h"
#include "engine/lifecycle/download.h"
#include "engine/lifecycle/failure_handler.h"
#include "engine/lifecycle/kept_aside.h"
#include "engine/paths/download_paths.h"
#include "engine/record/known_file.h"
#include "engine/workers/debug_log.h"
#include "engine/workers/digest_headers.h"
#include "engine/workers/range_answer.h"
#include "engine/workers/retry_after.h"
#include "http/http_request.h"
#include "links/format/byte_counts.h"
#include "links/repair/percent_escapes.h"
#include "platform/base/user_defaults.h"
#include "platform/net/status_codes.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

using Worker = Transfer::Worker;

bool isSuccess(qint64 statusCode) {
    return statusCode < 0 || platform::status::isSuccess(statusCode);
}

/// The client is going to ask again, elsewhere or with credentials.
bool isFollowedByAnother(const WorkerResponse& response) {
    const bool isRedirect = response.statusCode >= 300 && response.statusCode <= 399;
    return response.statusCode == platform::status::unauthorized ||
           response.statusCode == platform::status::proxyAuthenticationRequired ||
           (isRedirect && response.headers && response.headers->contains(u"Location"_s));
}

void noteAnswer(DQDownload& download, const WorkerResponse& response) {
    if (response.statusCode >= 0)
        download.userSettings().set(keys::statusCode, response.statusCode);
    if (!response.url.isEmpty())
        download.userSettings().set(keys::responseURL, response.url.absoluteString());
}

void adoptLastModifiedDate(DQDownload& download, const WorkerResponse& response) {
    if (const auto text =
            response.headers ? response.headers->value(u"Last-Modified"_s) : std::nullopt)
        download.dates().setLastModifiedOnServerDate(
            http::HTTPRequest::dateFromRFC1123String(*text));
}

void goOnWithPart(DQDownload& download, const Worker& worker, const WorkerResponse& response) {
    noteAnswer(download, response);
    if (download.transfer().isFirst(worker)) {
        rememberLengthFromPart(download.userSettings(), response);
        // After a restart of the program nobody else remembers it.
        if (!download.dates().lastModifiedOnServerDate())
            adoptLastModifiedDate(download, response);
        download.dates().noteAnswer();
        debugLog(download, [&] {
            return u"%1 resuming from %2 (worker: %3)"_s.arg(
                download.description(), links::fileSizeText(worker.resumeByteOffset()),
                worker.description());
        });
        return;
    }
    download.transfer().setHasJustAddedAccelerationWorkers();
    debugLog(download, [&] {
        return u"%1 starting acceleration worker %2 at offset %3"_s
            .arg(download.description(), worker.description())
            .arg(worker.fractionStartByte());
    });
}

/// The whole file comes in place of the rest that was asked for: what is on disk may be another
/// version of it, and stays until this one is complete.
void beginAnewWith(DQDownload& download, Worker& worker) {
    Transfer& transfer = download.transfer();
    download.noteKeptBytes();
    transfer.dropWorkers(1);
    putPartialDataAside(download);
    transfer.resetProgress();
    worker.becomeWholeTransfer();
}

void refuseAnswer(DQDownload& download, const Worker& worker) {
    download.interrupt(
        makeWorkerError(WorkerErrorCode::OtherAnswer,
                        u"%1 received something else than the file"_s.arg(worker.description())));
}

/// Waiting helps against none of these, but another address may.
bool isAboutAddress(qint64 statusCode) {
    return statusCode == platform::status::unauthorized || statusCode == 403 || statusCode == 404 ||
           statusCode == 410;
}

/// An acceleration worker gets bytes, but not those of its part. What the first one reads is not
/// touched by that.
void goOnWithoutAcceleration(DQDownload& download) {
    const Worker& first = *download.transfer().workers().front();
    if (first.endByte() > 0) {
        // Other workers go on with what may be another version of the file.
        download.startOverBesidePartialData();
        return;
    }
    const bool isFirstDone = first.isDone();
    dropAcceleration(download.transfer());
    if (isFirstDone)
        download.goOnAlone();
}

void adoptSuggestedName(DQDownload& download, const QString& suggestedFilename) {
    if (suggestedFilename.isEmpty() || download.userSettings().boolean(keys::keepsName))
        return;
    const QString name = links::stringByReplacingEscapesOfName(
        suggestedFilename, links::plusSignsInNames(download.context().defaults));
    if (name != download.name())
        download.setName(name);
}

void handleWholeAnswer(DQDownload& download, Worker& worker, const WorkerResponse& response) {
    if (isUnaskedPart(response)) {
        handleFailure(download, worker,
                      makeWorkerError(WorkerErrorCode::WrongPart,
                                      u"%1 received a part without having asked for one"_s.arg(
                                          worker.description())));
        return;
    }
    if (isSuccess(response.statusCode) &&
        speaksAgainstFile(response, worker.expectedBytes(), knownFileAside(download)))
        return refuseAnswer(download, worker);
    if (asksToWait(response.statusCode) &&
        download.putOff(worker, retryAfter(response, download.context().wallNow())))
        return;
    noteAnswer(download, response);
    if (isSuccess(response.statusCode)) {
        rememberFile(download.userSettings(), response, worker.expectedBytes());
        if (const auto checksum = checksumInHeaders(response))
            download.userSettings().set(keys::serverChecksum, checksum->text());
    }
    download.userSettings().remove(keys::accelerationWorkers);
    adoptLastModifiedDate(download, response);
    download.dates().noteAnswer();
    adoptSuggestedName(download, response.suggestedFilename);
    accelerateIfPossible(download.transfer(), worker.shared_from_this(), response,
                         download.host().connectionsFor(download));
}

}  // namespace

void keepPartialData(DQDownload& download, Worker& worker, const WorkerResponse& response) {
    Transfer& transfer = download.transfer();
    const bool isOneOfSeveral = transfer.workers().size() >= 2;
    const bool mayWait = asksToWait(response.statusCode);
    const auto told = mayWait ? retryAfter(response, download.context().wallNow()) : std::nullopt;
    if (isAboutAddress(response.statusCode) && !hasOthersRunning(transfer, worker) &&
        download.askOriginalAgain())
        return;
    if ((isOneOfSeveral && letPartWait(download, worker, told)) || download.askOriginalAgain() ||
        (mayWait && download.putOff(worker, told)))
        return;
    download.userSettings().set(keys::statusCode, response.statusCode);
    download.abort();
}

void handleResponse(DQDownload& download, Worker& worker, const WorkerResponse& response) {
    debugLog(download, [&] {
        return u"%1 got a %2 from <%3> (worker: %4)"_s.arg(
            download.description(), QString::number(response.statusCode),
            response.url.absoluteString(), worker.description());
    });
    if (!worker.hasRange()) {
        handleWholeAnswer(download, worker, response);
        return;
    }
    if (isFollowedByAnother(response))
        return;
    const bool isFirst = download.transfer().isFirst(worker);
    const KnownFile known = knownFile(download.userSettings());
    const RangeAnswer answer = judgeRangeAnswer(worker, response, known);
    if (answer == RangeAnswer::Honoured) {
        goOnWithPart(download, worker, response);
    } else if (answer == RangeAnswer::Withheld) {
        keepPartialData(download, worker, response);
    } else if (answer == RangeAnswer::NothingLeft && isFirst) {
        download.finishWithPartialData();
    } else if (!isFirst) {
        goOnWithoutAcceleration(download);
    } else if (answer == RangeAnswer::Contradicted) {
        download.startOverBesidePartialData();
    } else if (speaksAgainstFile(response, worker.expectedBytes(), known)) {
        refuseAnswer(download, worker);
    } else {
        beginAnewWith(download, worker);
        handleWholeAnswer(download, worker, response);
    }
}

}  // namespace engine
