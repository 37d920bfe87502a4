#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <utility>
#include <vector>

#include "platform/net/url.h"

namespace platform {

/// Header fields in the order they came or go. Names compare without regard to case (RFC 9110,
/// 5.1) but keep the case in which they were written.
class HTTPHeaders {
public:
    using Field = std::pair<QString, QString>;

    /// Replaces all fields of that name, or appends.
    void set(const QString& name, const QString& value);
    /// Appends, keeping fields of the same name.
    void add(const QString& name, const QString& value);
    void remove(const QString& name);
    void clear() { fields_.clear(); }

    /// The value. Several of one name: each once, joined with ", " (RFC 9110, 5.3), except that a
    /// field which is no list gives the first. Nothing: no such field.
    [[nodiscard]] std::optional<QString> value(const QString& name) const;
    [[nodiscard]] QStringList values(const QString& name) const;
    [[nodiscard]] bool contains(const QString& name) const;
    [[nodiscard]] bool isEmpty() const { return fields_.empty(); }
    [[nodiscard]] const std::vector<Field>& fields() const { return fields_; }

private:
    std::vector<Field> fields_;
};

enum class HTTPVersion { Http10, Http11 };

/// A request without its body.
struct HTTPRequestMessage {
    QString method;
    Url url;
    HTTPVersion version = HTTPVersion::Http11;
    /// All fields but "Host", "Content-Length" of a streamed body and what a connection needs;
    /// those are not sent if given here. A field that holds a control character, such as a line
    /// break or a NUL, is not sent either. Values go out in ISO Latin 1 where it can hold them,
    /// else in UTF-8. "Proxy-Authorization" goes to an HTTP proxy and to nobody else.
    HTTPHeaders headers;
};

/// The head of the final response (no 1xx).
struct HTTPResponseHead {
    QString statusLine;  ///< As it came, without the line break.
    int statusCode = 0;
    HTTPVersion version = HTTPVersion::Http11;
    /// Bytes beyond ASCII that are not UTF-8 are taken as ISO Latin 1.
    HTTPHeaders headers;
    /// The proxy's question in answer to CONNECT (407): not a word of it is the server's.
    bool fromProxy = false;
};

}  // namespace platform
