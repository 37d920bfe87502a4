#pragma once

#include <QString>

namespace links {

/// A size for people, in steps of 1000: "999 Bytes", "1.5 KB", "1.23 GB"; "-" for nothing. Main
/// thread.
[[nodiscard]] QString fileSizeDescriptionWithBytesCount(quint64 bytesCount);
/// The same; a count below 0 is nothing.
[[nodiscard]] QString fileSizeText(qint64 bytesCount);

/// The part of "PART of WHOLE": without its unit if that is the unit of `overallBytesCount` too.
/// An `overallBytesCount` of 0 is not known.
[[nodiscard]] QString partialFileSizeDescriptionWithBytesCount(quint64 bytesCount,
                                                               quint64 overallBytesCount);

}  // namespace links
