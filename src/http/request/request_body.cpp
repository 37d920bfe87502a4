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

RequestBody::RequestBody(RequestOptions& options) : options_(options) {}

RequestBody::~RequestBody() {
    removeTemporaryFiles();
}

void RequestBody::setup() {
    if (!options_.shouldStreamPostDataFromDisk)
        return;
    if (options_.postBodyFilePath.isEmpty()) {
        options_.postBodyFilePath = makeTemporaryPath();
        didCreatePostBodyFile_ = true;
    }
    if (postBodyWriteStream_ == nullptr) {
        postBodyWriteStream_ = std::make_unique<QFile>(options_.postBodyFilePath);
        postBodyWriteStream_->open(QIODevice::WriteOnly | QIODevice::Truncate);
    }
}

void RequestBody::append(const QByteArray& data) {
    setup();
    if (data.isEmpty())
        return;
    if (options_.shouldStreamPostDataFromDisk)
        postBodyWriteStream_->write(data);
    else
        postBody_.append(data);
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
    return !postBody_.isEmpty() || !options_.postBodyFilePath.isEmpty();
}

std::optional<Error> RequestBody::build() {
    if (haveBuiltPostBody_)
        return std::nullopt;
    if (!options_.postBodyFilePath.isEmpty()) {
        if (auto error = buildFromFile())
            return error;
    } else if (options_.shouldCompressRequestBody) {
        CodedBytes compressed = HTTPDataCompressor::compressData(postBody_);
        if (compressed.error)
            return compressed.error;
        compressedPostBody_ = compressed.data;
        length_ = static_cast<std::uint64_t>(compressedPostBody_.size());
    } else {
        length_ = static_cast<std::uint64_t>(postBody_.size());
    }
    haveBuiltPostBody_ = true;
    return std::nullopt;
}

std::optional<Error> RequestBody::buildFromFile() {
    postBodyWriteStream_.reset();
    QString path = options_.postBodyFilePath;
    if (options_.shouldCompressRequestBody) {
        if (compressedPostBodyFilePath_.isEmpty()) {
            compressedPostBodyFilePath_ = makeTemporaryPath();
            if (auto error =
                    HTTPDataCompressor::compressDataFromFile(path, compressedPostBodyFilePath_))
                return error;
        }
        path = compressedPostBodyFilePath_;
    }
    const auto size = platform::fileSize(path);
    if (!size)
        return fileAttributesError(path);
    length_ = static_cast<std::uint64_t>(*size);
    return std::nullopt;
}

RequestBody::Opened RequestBody::open(BandwidthAccount& bandwidth,
                                      std::function<void()> throttling) const {
    if (length_ == 0)
        return {};
    const QString& path = compressedPostBodyFilePath_.isEmpty() ? options_.postBodyFilePath
                                                                : compressedPostBodyFilePath_;
    Opened opened;
    if (!path.isEmpty())
        opened.stream =
            HTTPInputStream::inputStreamWithFileAtPath(path, bandwidth, std::move(throttling));
    else
        opened.stream = HTTPInputStream::inputStreamWithData(
            compressedPostBody_.isEmpty() ? postBody_ : compressedPostBody_, bandwidth,
            std::move(throttling));
    opened.failed = opened.stream == nullptr;
    return opened;
}

void RequestBody::drop() {
    removeTemporaryFiles();
    postBody_.clear();
    compressedPostBody_.clear();
    options_.postBodyFilePath.clear();
    length_ = 0;
}

void RequestBody::removeTemporaryFiles() {
    postBodyWriteStream_.reset();
    if (std::exchange(didCreatePostBodyFile_, false))
        removeFileIfPresent(options_.postBodyFilePath);
    if (!compressedPostBodyFilePath_.isEmpty())
        removeFileIfPresent(compressedPostBodyFilePath_);
    compressedPostBodyFilePath_.clear();
}

}  // namespace http
