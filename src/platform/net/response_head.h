#pragma once

#include <QByteArray>
#include <optional>

#include "platform/net/http_message.h"

namespace platform {

/// What the lines of a response's head say.
struct ReadHead {
    HTTPResponseHead head;
    /// A field that decides where the body ends is written so that not everybody reads it: folded,
    /// or with a blank where none belongs (RFC 9112, 5.1 and 5.2).
    bool isFramingDoubtful = false;
};

/// `block`: from the status line to the empty line. Nothing: there is no status line at its start.
[[nodiscard]] std::optional<ReadHead> readHead(const QByteArray& block);

}  // namespace platform
