#pragma once

#include <cstdint>
#include <optional>

#include "platform/net/http_message.h"

namespace platform {

/// What a response's "Content-Range" says.
struct ContentRange {
    std::uint64_t first = 0, last = 0;   ///< Both belong to it.
    std::optional<std::uint64_t> total;  ///< Of the whole document. Nothing: not known.
};

/// Nothing: malformed or in itself impossible (RFC 9110, 14.4).
[[nodiscard]] std::optional<ContentRange> contentRange(const QString& field);

/// What a request's "Range" asks for (RFC 9110, 14.2).
struct AskedRange {
    enum class Kind {
        Whole,    ///< No "Range".
        From,     ///< `first` to `last`, or to the end if there is no `last`.
        Suffix,   ///< The last `last` bytes.
        Unknown,  ///< Several ranges, or another unit.
    };
    Kind kind = Kind::Whole;
    std::uint64_t first = 0;
    std::optional<std::uint64_t> last;
};

[[nodiscard]] AskedRange askedRange(const HTTPHeaders& request);

/// Why a 206 with these headers cannot be an answer to `asked`, in plain words. Empty: it can.
[[nodiscard]] QString contradictionOfPartialContent(const HTTPHeaders& response,
                                                    const AskedRange& asked);

}  // namespace platform
