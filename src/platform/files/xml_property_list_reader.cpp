#include <QDateTime>
#include <QSet>
#include <cmath>
#include <limits>

#include "platform/base/utc.h"
#include "platform/files/property_list_kinds.h"
#include "platform/files/xml_property_list.h"
#include "platform/files/xml_tokens.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// A quint64 only where a qint64 is too small.
std::optional<QVariant> parsedInteger(QStringView text) {
    bool isNumber = false;
    const QStringView digits = text.startsWith(u'-') || text.startsWith(u'+') ? text.mid(1) : text;
    const bool isHexadecimal = digits.startsWith(u"0x", Qt::CaseInsensitive);
    const quint64 size = isHexadecimal ? digits.mid(2).toULongLong(&isNumber, 16)
                                       : digits.toULongLong(&isNumber, 10);
    const bool isNegative = text.startsWith(u'-');
    constexpr quint64 largest = std::numeric_limits<qint64>::max();
    if (!isNumber || digits.startsWith(u'+') || digits.startsWith(u'-') ||
        (isNegative && size > largest + 1))
        return std::nullopt;
    if (!isNegative && size > largest)
        return size;
    return static_cast<qint64>(isNegative ? 0 - size : size);
}

std::optional<double> parsedReal(QStringView text) {
    const QString lower = text.toString().toLower();
    if (lower == u"nan")
        return std::nan("");
    const double infinity = std::numeric_limits<double>::infinity();
    if (lower == u"inf" || lower == u"+inf" || lower == u"infinity" || lower == u"+infinity")
        return infinity;
    if (lower == u"-inf" || lower == u"-infinity")
        return -infinity;
    bool isNumber = false;
    const double number = lower.toDouble(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<QDateTime> parsedDate(const QString& text) {
    constexpr auto form = u"yyyy-MM-dd'T'HH:mm:ss'Z'";
    const QDateTime local = QDateTime::fromString(text, QString::fromUtf16(form));
    if (!local.isValid())
        return std::nullopt;
    return QDateTime(local.date(), local.time(), utc);
}

std::optional<QByteArray> parsedData(QByteArray text) {
    text.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
    const auto result =
        QByteArray::fromBase64Encoding(std::move(text), QByteArray::AbortOnBase64DecodingErrors);
    return result ? std::optional(result.decoded) : std::nullopt;
}

/// Goes down the document; after the first error everything answers an invalid value.
class XmlReader {
public:
    XmlReader(const QByteArray& data, DuplicateKeys duplicateKeys)
        : xml_(data), duplicateKeys_(duplicateKeys) {}

    [[nodiscard]] PropertyListResult document() {
        QVariant value;
        if (!readStart())
            xml_.fail(u"There is no property list."_s);
        else if (xml_.name() != "plist")
            xml_.fail(u"The outermost element is <%1> where <plist> is expected."_s.arg(name()));
        else
            value = readOnlyValue();
        if (!xml_.hasFailed())
            xml_.next();
        if (xml_.hasFailed())
            return {{}, PropertyListFormat::Xml, xml_.error()};
        return {value, PropertyListFormat::Xml, {}};
    }

private:
    bool readStart() { return xml_.next() == XmlTokens::Kind::Start; }
    [[nodiscard]] QString name() const { return QString::fromUtf8(xml_.name()); }

    QVariant readOnlyValue();
    QVariant readValue(int depth);
    QVariant readDictionary(int depth);
    QVariant readArray(int depth);
    QVariant readEmpty(bool value);

    /// The parsed text of the current element, or an error that says what it is not.
    template <typename Parse>
    QVariant readScalar(const QString& wanted, Parse parse) {
        const QString text = xml_.readText();
        if (xml_.hasFailed())
            return {};
        const auto value = parse(text);
        if (!value) {
            constexpr qsizetype longestQuote = 40;
            xml_.fail(u"\"%1\" is no %2."_s.arg(text.trimmed().left(longestQuote), wanted));
            return {};
        }
        return QVariant::fromValue(*value);
    }

    XmlTokens xml_;
    QSet<QString> keys_;
    const DuplicateKeys duplicateKeys_;
};

QVariant XmlReader::readOnlyValue() {
    if (!readStart()) {
        xml_.fail(u"The property list is empty."_s);
        return {};
    }
    QVariant value = readValue(0);
    if (!xml_.hasFailed() && readStart())
        xml_.fail(u"There is a second value, <%1>, behind the first."_s.arg(name()));
    return value;
}

QVariant XmlReader::readValue(int depth) {
    if (depth >= deepestPropertyList) {
        xml_.fail(u"The values are nested more than %1 levels deep."_s.arg(deepestPropertyList));
        return {};
    }
    const QByteArrayView type = xml_.name();
    if (type == "string")
        return xml_.readText();
    if (type == "dict")
        return readDictionary(depth);
    if (type == "array")
        return readArray(depth);
    if (type == "true" || type == "false")
        return readEmpty(type == "true");
    if (type == "integer")
        return readScalar(u"integer of 64 bits"_s,
                          [](const QString& text) { return parsedInteger(text.trimmed()); });
    if (type == "real")
        return readScalar(u"number"_s,
                          [](const QString& text) { return parsedReal(text.trimmed()); });
    if (type == "date")
        return readScalar(u"date of the form 2000-12-31T23:59:59Z"_s,
                          [](const QString& text) { return parsedDate(text.trimmed()); });
    if (type == "data")
        return readScalar(u"Base64 text"_s,
                          [](const QString& text) { return parsedData(text.toUtf8()); });
    xml_.fail(u"<%1> is no element of property lists."_s.arg(name()));
    return {};
}

QVariant XmlReader::readDictionary(int depth) {
    QVariantMap map;
    while (readStart()) {
        if (xml_.name() != "key") {
            xml_.fail(u"<%1> stands where a <key> is expected."_s.arg(name()));
            return {};
        }
        // All records of a list have the same keys, which then take memory only once.
        const qsizetype place = xml_.place();
        const QString key = *keys_.insert(xml_.readText());
        if (duplicateKeys_ == DuplicateKeys::Refused && map.contains(key))
            xml_.failAt(place, u"The key \"%1\" stands here twice."_s.arg(key));
        if (!xml_.hasFailed() && !readStart())
            xml_.fail(u"The key \"%1\" has no value."_s.arg(key));
        if (xml_.hasFailed())
            return {};
        map.insert(key, readValue(depth + 1));
    }
    return map;
}

QVariant XmlReader::readArray(int depth) {
    QVariantList list;
    while (readStart())
        list.append(readValue(depth + 1));
    return list;
}

QVariant XmlReader::readEmpty(bool value) {
    if (readStart())
        xml_.fail(u"There is <%1> where nothing belongs."_s.arg(name()));
    return value;
}

}  // namespace

PropertyListResult readXmlPropertyList(const QByteArray& data, DuplicateKeys duplicateKeys) {
    return XmlReader(data, duplicateKeys).document();
}

}  // namespace platform
