#include "http/extras/file_output.h"

#include "http/content/http_data_decompressor.h"
#include "http/http_request_error.h"
#include "http/request/request_state.h"
#include "http/request/temporary_path.h"
#include "platform/files/files.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::Error;

std::optional<Error> updatePartialDownloadSize(RequestState& state) {
    const QString& path = state.options.temporaryFileDownloadPath;
    if (!state.options.allowResumeForFileDownloads ||
        state.options.downloadDestinationPath.isEmpty() || path.isEmpty() ||
        !platform::pathExists(path))
        return std::nullopt;
    const auto size = platform::fileSize(path);
    if (!size)
        return fileAttributesError(path);
    state.partialDownloadSize = static_cast<std::uint64_t>(*size);
    return std::nullopt;
}

QString rangeFrom(std::uint64_t start) {
    return u"bytes=%1-"_s.arg(start);
}

FileOutput::Start FileOutput::begin() {
    if (fileDownloadOutputStream_ != nullptr)
        return {};
    Start start;
    const bool askedForRest = state_.options.allowResumeForFileDownloads && state_.request &&
                              state_.request->headers.contains(u"Range"_s);
    appends_ = askedForRest && state_.responseHeader(u"Content-Range"_s).has_value();
    if (askedForRest && !appends_)
        start.discarded = std::exchange(state_.partialDownloadSize, 0);
    start.error = open(fileDownloadOutputStream_, state_.options.temporaryFileDownloadPath);
    return start;
}

std::optional<Error> FileOutput::open(File& file, QString& path) {
    // A name that was just made up belongs to nobody else, so a file there was planted.
    const bool isMadeUp = path.isEmpty();
    if (isMadeUp)
        path = makeTemporaryPath();
    const auto whatIsThere = isMadeUp   ? QIODevice::NewOnly
                             : appends_ ? QIODevice::Append
                                        : QIODevice::Truncate;
    file = std::make_unique<QFile>(path);
    if (file->open(QIODevice::WriteOnly | QIODevice::Unbuffered | whatIsThere))
        return std::nullopt;
    file.reset();
    return fileWriteError(path);
}

/// A full disk must not pass for a whole file.
std::optional<Error> FileOutput::writeAll(QFile& file, const QByteArray& data) {
    if (file.write(data) == data.size())
        return std::nullopt;
    return fileWriteError(file.fileName());
}

std::optional<Error> FileOutput::write(const QByteArray& received) {
    return writeAll(*fileDownloadOutputStream_, received);
}

std::optional<Error> FileOutput::writeInflated(const QByteArray& inflated) {
    if (inflatedFileDownloadOutputStream_ == nullptr)
        if (auto error = open(inflatedFileDownloadOutputStream_,
                              state_.options.temporaryUncompressedDataDownloadPath))
            return error;
    return writeAll(*inflatedFileDownloadOutputStream_, inflated);
}

void FileOutput::close() {
    fileDownloadOutputStream_.reset();
    inflatedFileDownloadOutputStream_.reset();
}

std::optional<Error> FileOutput::finish() {
    QString& temporaryPath = state_.options.temporaryFileDownloadPath;
    close();
    if (temporaryPath.isEmpty())
        return std::nullopt;
    std::optional<Error> error;
    if (!state_.isResponseCompressed()) {
        error = moveToDestination(temporaryPath);
    } else {
        QString& inflatedPath = state_.options.temporaryUncompressedDataDownloadPath;
        error = state_.options.shouldWaitToInflateCompressedResponses
                    ? inflateToDestination()
                    : moveToDestination(inflatedPath);
        inflatedPath.clear();
        removeFileIfPresent(temporaryPath);
    }
    temporaryPath.clear();
    return error;
}

std::optional<Error> FileOutput::inflateToDestination() const {
    return HTTPDataDecompressor::uncompressDataFromFile(state_.options.temporaryFileDownloadPath,
                                                        state_.options.downloadDestinationPath);
}

std::optional<Error> FileOutput::moveToDestination(const QString& path) const {
    const QString& destination = state_.options.downloadDestinationPath;
    if (!removeFileIfPresent(destination))
        return fileDeletionError(destination);
    if (platform::moveFile(path, destination))
        return fileMoveError(state_.options.temporaryFileDownloadPath, destination);
    return std::nullopt;
}

void FileOutput::abandon() {
    if (state_.options.temporaryFileDownloadPath.isEmpty())
        return;
    close();
    if (state_.phase == RequestPhase::Answered && !state_.error)
        return;
    if (!state_.options.allowResumeForFileDownloads)
        removeFileIfPresent(state_.options.temporaryFileDownloadPath);
    if (!state_.options.temporaryUncompressedDataDownloadPath.isEmpty())
        removeFileIfPresent(state_.options.temporaryUncompressedDataDownloadPath);
}

}  // namespace http
