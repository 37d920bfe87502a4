#include "http/request/file_output.h"

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
    if (_fileDownloadOutputStream != nullptr)
        return {};
    Start start;
    const bool askedForRest = _state.options.allowResumeForFileDownloads && _state.request &&
                              _state.request->headers.contains(u"Range"_s);
    _appends = askedForRest && _state.responseHeader(u"Content-Range"_s).has_value();
    if (askedForRest && !_appends)
        start.discarded = std::exchange(_state.partialDownloadSize, 0);
    start.error = open(_fileDownloadOutputStream, _state.options.temporaryFileDownloadPath);
    return start;
}

std::optional<Error> FileOutput::open(File& file, QString& path) {
    // A name that was just made up belongs to nobody else, so a file there was planted.
    const bool isMadeUp = path.isEmpty();
    if (isMadeUp)
        path = makeTemporaryPath();
    const auto whatIsThere = isMadeUp   ? QIODevice::NewOnly
                             : _appends ? QIODevice::Append
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
    return writeAll(*_fileDownloadOutputStream, received);
}

std::optional<Error> FileOutput::writeInflated(const QByteArray& inflated) {
    if (_inflatedFileDownloadOutputStream == nullptr)
        if (auto error = open(_inflatedFileDownloadOutputStream,
                              _state.options.temporaryUncompressedDataDownloadPath))
            return error;
    return writeAll(*_inflatedFileDownloadOutputStream, inflated);
}

void FileOutput::close() {
    _fileDownloadOutputStream.reset();
    _inflatedFileDownloadOutputStream.reset();
}

std::optional<Error> FileOutput::finish() {
    QString& temporaryPath = _state.options.temporaryFileDownloadPath;
    close();
    if (temporaryPath.isEmpty())
        return std::nullopt;
    std::optional<Error> error;
    if (!_state.isResponseCompressed()) {
        error = moveToDestination(temporaryPath);
    } else {
        QString& inflatedPath = _state.options.temporaryUncompressedDataDownloadPath;
        error = _state.options.shouldWaitToInflateCompressedResponses
                    ? inflateToDestination()
                    : moveToDestination(inflatedPath);
        inflatedPath.clear();
        removeFileIfPresent(temporaryPath);
    }
    temporaryPath.clear();
    return error;
}

std::optional<Error> FileOutput::inflateToDestination() const {
    return HTTPDataDecompressor::uncompressDataFromFile(_state.options.temporaryFileDownloadPath,
                                                        _state.options.downloadDestinationPath);
}

std::optional<Error> FileOutput::moveToDestination(const QString& path) const {
    const QString& destination = _state.options.downloadDestinationPath;
    if (!removeFileIfPresent(destination))
        return fileDeletionError(destination);
    if (platform::moveFile(path, destination))
        return fileMoveError(_state.options.temporaryFileDownloadPath, destination);
    return std::nullopt;
}

void FileOutput::abandon() {
    if (_state.options.temporaryFileDownloadPath.isEmpty())
        return;
    close();
    if (_state.downloadComplete)
        return;
    if (!_state.options.allowResumeForFileDownloads)
        removeFileIfPresent(_state.options.temporaryFileDownloadPath);
    if (!_state.options.temporaryUncompressedDataDownloadPath.isEmpty())
        removeFileIfPresent(_state.options.temporaryUncompressedDataDownloadPath);
}

}  // namespace http
