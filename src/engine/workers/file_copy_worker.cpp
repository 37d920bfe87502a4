#include "engine/workers/file_copy_worker.h"

#include <QFile>

#include <algorithm>
#include <utility>

#include "engine/context.h"
#include "engine/paths/intermediate_files.h"
#include "engine/workers/file_source.h"
#include "http/shared/bandwidth_account.h"
#include "links/names/file_names.h"
#include "links/paths/available_path.h"
#include "platform/base/run_loop.h"
#include "platform/base/thread_pool.h"
#include "platform/net/status_codes.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

constexpr qint64 noStatusCode = -1;

}  // namespace

FileCopyWorker::FileCopyWorker(const Context& context)
    : DQDownloadWorkerPrototype(context), answering_(context.loop), resting_(context.loop) {}

DQDownloadWorkerPrototype::Pointer FileCopyWorker::make(const Context& context) {
    return Pointer(new FileCopyWorker(context));
}

FileCopyWorker::~FileCopyWorker() {
    if (source_)
        source_->stop();
    closeTarget();
}

bool FileCopyWorker::startWithRequest(const WorkerRequest& request, const QString&,
                                      platform::Seconds) {
    if (source_ || !request.url.isFile())
        return false;
    source_ = FileSource::make(context().disks);
    answering_.start(0, [this] { answer(); });
    return true;
}

void FileCopyWorker::answer() {
    const auto keep = shared_from_this();
    if (const auto error = source_->open(request().url.filePath()))
        return stopWithError(*error);
    const qint64 offset = answeredOffset();
    WorkerResponse response;
    response.headers.emplace();
    response.headers->set(u"ETag"_s, u'"' + source_->version() + u'"');
    response.url = request().url;
    response.statusCode = offset > 0 ? platform::status::partialContent : noStatusCode;
    response.suggestedFilename =
        links::filename(request().url, links::plusSignsInNames(context().defaults));
    processResponse(response, source_->size() - offset);
    if (!source_ || status() != DQDownloadWorkerStatusRunning)
        return;
    source_->start(fractionStartByte() + resumeByteOffset(),
                   {[this](const QByteArray& data) { take(data); },
                    [this] {
                        const auto keepAlive = shared_from_this();
                        source_.reset();
                        closeTarget();
                        finish();
                    },
                    [this](const platform::Error& error) {
                        const auto keepAlive = shared_from_this();
                        stopWithError(error);
                    }});
    readOn();
}

/// Where the copy can go on. 0: it must begin again.
qint64 FileCopyWorker::answeredOffset() const {
    const qint64 wanted = fractionStartByte() + resumeByteOffset();
    return wanted < source_->size() && !source_->isNewerThan(targetPath()) ? wanted : 0;
}

std::optional<platform::Error> FileCopyWorker::openTarget() {
    QString path = targetPathByFallingBackToDelegate();
    if (path.isEmpty())
        return makeWorkerError(WorkerErrorCode::MissingTargetPath,
                               u"%1 missing target path"_s.arg(description()));
    if (resumeByteOffset() >= 1)
        path = links::availablePathWithCurrentPath(path, std::nullopt, resumeMarker, false).path;
    else
        QFile::remove(path);
    auto target = std::make_shared<PartialFile>(context().disks, context().loop.clock());
    if (const auto error = target->open({path}, 0))
        return makeWorkerError(WorkerErrorCode::CannotWrite,
                               u"%1 cannot write to intermediate file"_s.arg(description()),
                               &*error);
    target_ = std::move(target);
    return std::nullopt;
}

void FileCopyWorker::take(const QByteArray& data) {
    const auto keep = shared_from_this();
    if (!target_) {
        if (const auto error = openTarget())
            return stopWithError(*error);
        willStoreBytes();
    }
    target_->writesOfDisk().start(
        [&loop = context().loop, target = target_, data, weak = weak_from_this()] {
            const auto error = target->write(data);
            loop.post([weak, count = data.size(), error] {
                if (const auto worker = weak.lock())
                    static_cast<FileCopyWorker&>(*worker).didWrite(count, error);
            });
        });
}

void FileCopyWorker::didWrite(qint64 count, const std::optional<platform::Error>& error) {
    if (!source_)
        return;
    if (error)
        return stopWithError(
            makeWorkerError(WorkerErrorCode::CannotWrite,
                            u"%1 cannot write to intermediate file"_s.arg(description()), &*error));
    if (const auto& limit = request().bandwidth)
        limit->incrementBandwidthUsedInLastSecond(static_cast<std::uint64_t>(count));
    processDownloadedBytes(count);
    readOn();
}

/// Looks every second while it rests, since the limit may be another one by then.
void FileCopyWorker::readOn() {
    constexpr platform::Seconds longestRest = 1;
    const auto& limit = request().bandwidth;
    if (!source_)
        return;
    if (limit)
        limit->measureBandwidthUsage();
    if (limit && limit->verdict() == http::BandwidthAccount::Verdict::Rest) {
        const platform::Seconds left =
            *limit->throttleWakeUpTime() - context().loop.clock().monotonic();
        resting_.start(std::clamp(left, 0.0, longestRest), [this] { readOn(); });
    } else {
        source_->readNext(limit ? limit->readLength(FileSource::blockSize) : FileSource::blockSize);
    }
}

bool FileCopyWorker::truncateAtOffset(qint64 offset) {
    if (!source_)
        return false;
    const auto keep = shared_from_this();
    source_->stop();
    source_.reset();
    if (!target_ || !target_->truncate(offset))
        return false;
    return DQDownloadWorkerPrototype::truncateAtOffset(offset);
}

void FileCopyWorker::closeTarget() {
    if (const auto target = std::exchange(target_, nullptr))
        target->close();
}

void FileCopyWorker::stopWithError(const platform::Error& error) {
    if (source_)
        source_->stop();
    source_.reset();
    closeTarget();
    failWithError(error);
}

}  // namespace engine
