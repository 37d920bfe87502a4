#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <optional>

namespace http {

/// A text encoding, by number: the small ones below are fixed; every other charset that ICU knows
/// has a number that holds for this process. 0 is none.
using StringEncoding = std::uint64_t;

inline constexpr StringEncoding noStringEncoding = 0;
inline constexpr StringEncoding asciiStringEncoding = 1;
inline constexpr StringEncoding utf8StringEncoding = 4;
inline constexpr StringEncoding latin1StringEncoding = 5;

/// The encoding of a charset name as registered with IANA, in any case. The name is taken as it
/// stands: blanks or quotation marks make it no name. Nothing: not known.
[[nodiscard]] std::optional<StringEncoding> stringEncodingFromIANAName(const QString& name);

/// Nothing: no such encoding, or bytes that are malformed in it.
[[nodiscard]] std::optional<QString> decodedString(const QByteArray& data, StringEncoding encoding);

}  // namespace http
