#pragma once

#include <QByteArray>
#include <QString>

namespace app {

/// The text of a list of addresses, one a line, without the lines that begin with "#". Lists are
/// UTF-8; a byte order mark may say UTF-16, and what is neither is read as Windows reads it.
[[nodiscard]] QString addressListText(const QByteArray& data);

/// Whether most lines of a text, of its first thousand, hold addresses: then it is a list of them,
/// otherwise a document that mentions some.
[[nodiscard]] bool isAddressList(const QString& text, bool skipRedirectingServices);

}  // namespace app
