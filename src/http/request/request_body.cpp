#include "http/request/request_body.h"

#include <QFile>
#include <utility>

#include "http/content/http_data_compressor.h"
#include "http/content/http_input_stream.h"
#include "http/http_request_error.h"
#include "http/request/temporary_path.h"
#include "http/request_options.h"
#include "platform/files/files.h"

namespace http {

using platform::Error;

namespace {

constexpr qint64 copyBufferSize = 262144;

}  // namespace

RequestBody::RequestBody(RequestOptions& options) : _options(options) {}

RequestBody::~RequestBody() {
    removeTemporaryFiles();
}

void RequestBody::setup() {
    if (!_options.shouldStreamPostDataFromDisk)
        return;
    if (_options.postBodyFilePath.isEmpty()) {
        _options.postBodyFilePath = makeTemporaryPath();
        _didCreatePostBodyFile = true;
    }
    if (_postBodyWriteStream == nullptr) {
        _postBodyWriteStream = std::make_unique<QFile>(_options.postBodyFilePath);
        _postBodyWriteStream->open(QIODevice::WriteOnly | QIODevice::Truncate);
    }
}

void RequestBody::append(const QByteArray& data) {
    setup();
    if (data.isEmpty())
        return;
    if (_options.shouldStreamPostDataFromDisk)
        _postBodyWriteStream->write(data);
    else
        _postBody.append(data);
}

void RequestBody::appendFile(const QString& path) {
    setup();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    while (true) {
        const QByteArray chunk = file.read(copyBufferSize);
        if (chunk.isEmpty())
            return;
        append(chunk);
    }
}

bool RequestBody::exists() const {
    return !_postBody.isEmpty() || !_options.postBodyFilePath.isEmpty();
}

std::optional<Error> RequestBody::build() {
    if (_haveBuiltPostBody)
        return std::nullopt;
    if (!_options.postBodyFilePath.isEmpty()) {
        if (auto error = buildFromFile())
            return error;
    } else if (_options.shouldCompressRequestBody) {
        CodedBytes compressed = HTTPDataCompressor::compressData(_postBody);
        if (compressed.error)
            return compressed.error;
        _compressedPostBody = compressed.data;
        _length = static_cast<std::uint64_t>(_compressedPostBody.size());
    } else {
        _length = static_cast<std::uint64_t>(_postBody.size());
    }
    _haveBuiltPostBody = true;
    return std::nullopt;
}

std::optional<Error> RequestBody::buildFromFile() {
    _postBodyWriteStream.reset();
    QString path = _options.postBodyFilePath;
    if (_options.shouldCompressRequestBody) {
        if (_compressedPostBodyFilePath.isEmpty()) {
            _compressedPostBodyFilePath = makeTemporaryPath();
            if (auto error =
                    HTTPDataCompressor::compressDataFromFile(path, _compressedPostBodyFilePath))
                return error;
        }
        path = _compressedPostBodyFilePath;
    }
    const auto size = platform::fileSize(path);
    if (!size)
        return fileAttributesError(path);
    _length = static_cast<std::uint64_t>(*size);
    return std::nullopt;
}

RequestBody::Opened RequestBody::open(BandwidthAccount& bandwidth,
                                      std::function<void()> throttling) const {
    if (_length == 0)
        return {};
    const QString& path = _compressedPostBodyFilePath.isEmpty() ? _options.postBodyFilePath
                                                                : _compressedPostBodyFilePath;
    Opened opened;
    if (!path.isEmpty())
        opened.stream =
            HTTPInputStream::inputStreamWithFileAtPath(path, bandwidth, std::move(throttling));
    else
        opened.stream = HTTPInputStream::inputStreamWithData(
            _compressedPostBody.isEmpty() ? _postBody : _compressedPostBody, bandwidth,
            std::move(throttling));
    opened.failed = opened.stream == nullptr;
    return opened;
}

void RequestBody::drop() {
    removeTemporaryFiles();
    _postBody.clear();
    _compressedPostBody.clear();
    _options.postBodyFilePath.clear();
    _length = 0;
}

void RequestBody::removeTemporaryFiles() {
    _postBodyWriteStream.reset();
    if (std::exchange(_didCreatePostBodyFile, false))
        removeFileIfPresent(_options.postBodyFilePath);
    if (!_compressedPostBodyFilePath.isEmpty())
        removeFileIfPresent(_compressedPostBodyFilePath);
    _compressedPostBodyFilePath.clear();
}

}  // namespace http
