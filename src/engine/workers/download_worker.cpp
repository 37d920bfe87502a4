#include "engine/workers/download_worker.h"

#include <QFile>

#include "engine/paths/intermediate_files.h"
#include "engine/workers/file_source.h"
#include "links/names/file_names.h"
#include "links/paths/available_path.h"
#include "platform/base/run_loop.h"
#include "platform/base/user_defaults.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

constexpr qint64 noStatusCode = -1;
constexpr qint64 partialContent = 206;

}  // namespace

DQDownloadWorkerPrototype::Pointer DQDownloadWorker::make() {
    return Pointer(new DQDownloadWorker);
}

DQDownloadWorker::~DQDownloadWorker() {
    if (_download)
        _download->stop();
    if (platform::hasMainRunLoop())
        platform::mainRunLoop().cancelAll(this);
}

bool DQDownloadWorker::startWithRequest(const WorkerRequest& request, const QString&,
                                        platform::Seconds) {
    if (_download || !request.url.isFile())
        return false;
    _download = FileSource::make();
    platform::mainRunLoop().performAfter(this, "answer", 0, [this] { answer(); });
    return true;
}

void DQDownloadWorker::answer() {
    const auto keep = shared_from_this();
    if (const auto error = _download->open(request().url.filePath()))
        return stopWithError(*error);
    const qint64 offset = answeredOffset();
    WorkerResponse response;
    response.url = request().url;
    response.statusCode = offset > 0 ? partialContent : noStatusCode;
    response.suggestedFilename =
        links::filename(request().url, links::plusSignsInNames(platform::standardDefaults()));
    processResponse(response, _download->size() - offset);
    if (!_download || status() != DQDownloadWorkerStatusRunning)
        return;
    _download->start(fractionStartByte() + resumeByteOffset(),
                     {[this](const QByteArray& data) { take(data); },
                      [this] {
                          const auto keepAlive = shared_from_this();
                          _download.reset();
                          target_.close();
                          finish();
                      },
                      [this](const platform::Error& error) {
                          const auto keepAlive = shared_from_this();
                          stopWithError(error);
                      }});
}

/// Where the copy can go on. 0: it must begin again.
qint64 DQDownloadWorker::answeredOffset() const {
    const qint64 wanted = fractionStartByte() + resumeByteOffset();
    return wanted < _download->size() && !_download->isNewerThan(targetPath()) ? wanted : 0;
}

std::optional<platform::Error> DQDownloadWorker::openTarget() {
    QString path = targetPathByFallingBackToDelegate();
    if (path.isEmpty())
        return makeWorkerError(WorkerErrorCode::MissingTargetPath,
                               u"%1 missing target path"_s.arg(description()));
    if (resumeByteOffset() >= 1)
        path = links::availablePathWithCurrentPath(path, std::nullopt, resumeMarker, false).path;
    else
        QFile::remove(path);
    if (const auto error = target_.open(path, 0))
        return makeWorkerError(WorkerErrorCode::CannotWrite,
                               u"%1 cannot write to intermediate file"_s.arg(description()),
                               &*error);
    return std::nullopt;
}

void DQDownloadWorker::take(const QByteArray& data) {
    const auto keep = shared_from_this();
    if (!target_.isOpen()) {
        if (const auto error = openTarget())
            return stopWithError(*error);
    }
    if (const auto error = target_.write(data))
        return stopWithError(
            makeWorkerError(WorkerErrorCode::CannotWrite,
                            u"%1 cannot write to intermediate file"_s.arg(description()), &*error));
    processDownloadedBytes(data.size());
}

bool DQDownloadWorker::truncateAtOffset(qint64 offset) {
    if (!_download)
        return false;
    const auto keep = shared_from_this();
    _download->stop();
    _download.reset();
    if (!target_.isOpen() || !target_.truncate(offset))
        return false;
    return DQDownloadWorkerPrototype::truncateAtOffset(offset);
}

void DQDownloadWorker::stopWithError(const platform::Error& error) {
    if (_download)
        _download->stop();
    _download.reset();
    target_.close();
    failWithError(error);
}

}  // namespace engine
