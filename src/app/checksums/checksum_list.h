#pragma once

#include <QByteArray>
#include <optional>
#include <vector>

#include "engine/record/checksum.h"
#include "platform/net/url.h"

namespace app {

/// Lists of checksums are small; larger files are none.
inline constexpr qint64 largestChecksumList = qint64{256} * 1024;

/// Whether a file of this name lists checksums, as "SHA256SUMS", "md5sum.txt" or "a.iso.sha256".
[[nodiscard]] bool isChecksumListName(const QString& name);

/// What a list says of the file of a name, in the forms of GNU coreutils ("DIGITS  NAME", with
/// "*" before the name of a binary file) and of BSD ("SHA256 (NAME) = DIGITS"). A list that is
/// named after the file may hold the digits alone. Nothing: it says nothing.
[[nodiscard]] std::optional<engine::Checksum> checksumInList(const QByteArray& list,
                                                             const QString& listName,
                                                             const QString& fileName);

/// Where lists for a file of the web may lie, beside it, the likeliest first.
[[nodiscard]] std::vector<platform::Url> checksumListAddresses(const platform::Url& file);

}  // namespace app
