#pragma once

#include <QString>
#include <optional>

#include "platform/net/url.h"

namespace links {

/// An address that can be downloaded as it stands: of http or https with a host, or of a file with
/// an absolute path. Any thread.
[[nodiscard]] bool isWholeAddress(const platform::Url& url);
/// A candidate as such an address, escaped where it must be. Nothing: it is none.
[[nodiscard]] std::optional<platform::Url> wholeAddress(const QString& candidate);

}  // namespace links
