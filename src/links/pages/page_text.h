#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace links {

/// The text of a web page. A byte order mark decides the charset, then `contentType`, the value of
/// that header, then a `meta` element near the start; a page that declares none, or one that is
/// not known, is UTF-8.
///
/// What is well-formed UTF-8 is taken for it even where a single-byte charset is declared: servers
/// declare ISO-8859-1 for whatever they send. Nothing: not text in the charset.
[[nodiscard]] std::optional<QString> pageText(const QByteArray& data, const QString& contentType);

/// Well-formed UTF-8, nothing else.
[[nodiscard]] std::optional<QString> textFromUtf8(const QByteArray& data);

}  // namespace links
