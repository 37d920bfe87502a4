#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/base/error.h"

class QFile;

namespace http {

class BandwidthAccount;
class HTTPInputStream;
struct RequestOptions;

/// What a request sends: gathered in memory, or in a file when it streams from disk; compressed
/// once, if wanted; opened anew for each send.
///
/// Under the request's lock.
class RequestBody {
public:
    explicit RequestBody(RequestOptions& options);
    ~RequestBody();
    RequestBody(const RequestBody&) = delete;
    RequestBody& operator=(const RequestBody&) = delete;

    void setPostBody(const QByteArray& body) { postBody_ = body; }
    [[nodiscard]] const QByteArray& postBody() const { return postBody_; }
    void setup();
    void append(const QByteArray& data);
    void appendFile(const QString& path);
    /// Whether there is a body, or a file that is to be one.
    [[nodiscard]] bool exists() const;

    /// Makes it ready to send; only the first call does anything. Nothing: `length` counts.
    [[nodiscard]] std::optional<platform::Error> build();
    /// As it goes over the wire.
    [[nodiscard]] std::uint64_t length() const { return length_; }
    struct Opened {
        std::unique_ptr<HTTPInputStream> stream;  ///< Null: no body is sent.
        bool failed = false;
    };
    [[nodiscard]] Opened open(BandwidthAccount& bandwidth, std::function<void()> throttling) const;

    /// Gives up the body for good; a file of the caller's stays where it is.
    void drop();
    /// Deletes what this object has put on disk. The body cannot be sent again after that.
    void removeTemporaryFiles();

private:
    [[nodiscard]] std::optional<platform::Error> buildFromFile();

    RequestOptions& options_;
    QByteArray postBody_;
    QByteArray compressedPostBody_;
    QString compressedPostBodyFilePath_;
    std::unique_ptr<QFile> postBodyWriteStream_;
    bool didCreatePostBodyFile_ = false;
    bool haveBuiltPostBody_ = false;
    std::uint64_t length_ = 0;
};

}  // namespace http
