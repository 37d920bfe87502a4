#pragma once

#include <QByteArray>
#include <QVariant>
#include <optional>
#include <vector>

namespace platform {

/// Why a text was refused, with where (from 1; 0 if not known).
struct ParseError {
    QString text;
    qint64 line = 0;
    qint64 column = 0;
};

enum class PropertyListFormat { Xml, Binary };

struct PropertyListResult {
    /// QVariantMap, QVariantList, QString, qint64, quint64 where that is too small, double, bool,
    /// QByteArray or QDateTime (UTC).
    /// Invalid: refused, see `error`.
    QVariant value;
    PropertyListFormat format = PropertyListFormat::Xml;
    ParseError error;
};

inline constexpr qint64 largestPropertyList = 64 << 20;

/// What becomes of a key that stands twice in a dictionary.
enum class DuplicateKeys {
    LastCounts,  ///< A file is not given up for it.
    Refused,     ///< Whoever typed it is told. Only of the XML form.
};

/// Reads either form. At most 512 levels deep, and unless the program's own work may be larger, 64
/// MiB.
[[nodiscard]] PropertyListResult readPropertyList(
    const QByteArray& data, qint64 maximumBytes = largestPropertyList,
    DuplicateKeys duplicateKeys = DuplicateKeys::LastCounts);

/// With tabs and keys in order of their code points; dates in UTC, whole seconds in XML. Characters
/// that XML cannot carry become U+FFFD. Empty: the value holds something that a property list
/// cannot, or is nested too deeply to be read again.
[[nodiscard]] QByteArray writePropertyList(const QVariant& value,
                                           PropertyListFormat format = PropertyListFormat::Xml);

/// An array whose elements change one by one, in XML: the text of one of them (empty: it holds
/// something that a property list cannot), and the pieces of the whole text, in their order.
[[nodiscard]] QByteArray propertyListElement(const QVariant& value);
[[nodiscard]] std::vector<QByteArray> propertyListOfElements(std::vector<QByteArray> elements);

/// The same value made of the types that `readPropertyList` answers with, all the way down.
/// Invalid: the value holds something that a property list cannot.
[[nodiscard]] QVariant propertyListValue(const QVariant& value);

}  // namespace platform
