#pragma once

#include <cstdint>
#include <optional>

#include "platform/base/error.h"

namespace platform {

class HTTPBodySource;

/// Feeds libcurl with a request's body, never more than was announced.
class BodyFeed {
public:
    /// `source` null: no body.
    BodyFeed(HTTPBodySource* source, std::uint64_t length) : source_(source), length_(length) {}

    [[nodiscard]] bool exists() const { return source_ != nullptr; }
    [[nodiscard]] std::uint64_t length() const { return length_; }
    /// What libcurl expects of its read callback: a count, or one of its CURL_READFUNC values.
    [[nodiscard]] std::size_t read(char* buffer, std::size_t maximum);
    /// False: cannot start over.
    [[nodiscard]] bool rewind();

    /// The source had nothing to give at its last reading.
    [[nodiscard]] bool isWaiting() const { return isWaiting_; }
    void stopWaiting() { isWaiting_ = false; }
    /// Why the body could not be supplied.
    [[nodiscard]] const std::optional<Error>& error() const { return error_; }

private:
    [[nodiscard]] std::size_t fail(const QString& text);

    HTTPBodySource* const source_;
    const std::uint64_t length_;
    std::uint64_t supplied_ = 0;
    bool isWaiting_ = false;
    std::optional<Error> error_;
};

}  // namespace platform
