#pragma once

#include <QString>
#include <QVariantMap>
#include <optional>
#include <span>

namespace browser {

/// What one field of a message must be.
struct Field {
    enum class Kind {
        Id,       ///< 1 to 128 of A-Z a-z 0-9 . _ -
        Address,  ///< of http or https, without blanks and control characters
        Line,     ///< a text without control characters
        Method,   ///< GET or POST
        Base64,   ///< bytes, at most `largest` of them
        Integer,  ///< from 0 to `largest`
        Bool,
        Object,
        List,  ///< of at most `largest` elements
    };
    const char* name = nullptr;
    Kind kind = Kind::Id;
    /// Characters of texts, else as said above.
    qint64 largest = 0;
    bool isRequired = false;
};

/// What is wrong with the object, in English, naming nothing but fields; nothing: it holds what is
/// required, and what else it holds is in the table and fits.
[[nodiscard]] std::optional<QString> problemWithFields(const QVariantMap& object,
                                                       std::span<const Field> fields);

/// Of a text that is base64 as RFC 4648 has it. Nothing: it is not.
[[nodiscard]] std::optional<QByteArray> decodedBase64(const QString& text);

}  // namespace browser
