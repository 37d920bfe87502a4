#pragma once

#include <QString>
#include <optional>

#include "http/content/string_encoding.h"

namespace http {

struct ContentType {
    QString mimeType;
    /// Nothing: no charset, or none that is known.
    std::optional<StringEncoding> encoding;
};

/// The two parts of a "Content-Type" that matter here (RFC 9110, 8.3). The charset's name goes to
/// the converter as it stands, so one in quotation marks is not known.
[[nodiscard]] ContentType parseContentType(const QString& contentType);

/// Whether a "Content-Encoding" speaks of gzip anywhere.
[[nodiscard]] bool isGzipContentEncoding(const QString& contentEncoding);

}  // namespace http
