#pragma once

#include <QString>

namespace links {

/// The file name in a "Content-Disposition" field (RFC 6266, and what servers really send): the
/// extended form in UTF-8, else the quoted form, in which backslashes stay, else the token form,
/// which is the whole rest of the field. Reduced to its last path component. Empty: there is none.
/// Not yet fit for the disk: see `safeFileName`. Any thread.
[[nodiscard]] QString filenameFromContentDisposition(const QString& field);

}  // namespace links
