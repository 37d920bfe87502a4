#include <QDateTime>
#include <QTimeZone>
#include <QXmlStreamReader>
#include <cmath>
#include <limits>

#include "platform/files/property_list_kinds.h"
#include "platform/files/xml_property_list.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

std::optional<qint64> parsedInteger(QStringView text) {
    bool isHexadecimal = false;
    bool isNumber = false;
    const QStringView digits = text.startsWith(u'-') || text.startsWith(u'+') ? text.mid(1) : text;
    isHexadecimal = digits.startsWith(u"0x", Qt::CaseInsensitive);
    const quint64 size = isHexadecimal ? digits.mid(2).toULongLong(&isNumber, 16)
                                       : digits.toULongLong(&isNumber, 10);
    const bool isNegative = text.startsWith(u'-');
    constexpr quint64 largest = std::numeric_limits<qint64>::max();
    if (!isNumber || digits.startsWith(u'+') || digits.startsWith(u'-') ||
        size > largest + (isNegative ? 1 : 0))
        return std::nullopt;
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
    return QDateTime(local.date(), local.time(), Qt::UTC);
}

std::optional<QByteArray> parsedData(QByteArray text) {
    text.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
    const auto result =
        QByteArray::fromBase64Encoding(std::move(text), QByteArray::AbortOnBase64DecodingErrors);
    return result ? std::optional(result.decoded) : std::nullopt;
}

/// Goes down the document; after the first error everything answers an invalid value.
class Reader {
public:
    explicit Reader(const QByteArray& data) : xml_(data) {}

    [[nodiscard]] PropertyListResult document() {
        QVariant value;
        if (readStart() && xml_.name() != u"plist")
            fail(u"The outermost element is <%1> where <plist> is expected."_s.arg(xml_.name()));
        if (!hasFailed())
            value = readOnlyValue();
        if (!hasFailed())
            readTail();
        if (hasFailed())
            return {{}, PropertyListFormat::Xml, error_};
        return {value, PropertyListFormat::Xml, {}};
    }

private:
    bool next();
    bool readStart();
    QVariant readOnlyValue();
    void readTail();
    QVariant readValue(int depth);
    QVariant readDictionary(int depth);
    QVariant readArray(int depth);
    QVariant readEmpty(bool value);
    QString readText();

    /// The parsed text of the current element, or an error that says what it is not.
    template <typename Parse>
    QVariant readScalar(const QString& wanted, Parse parse) {
        const QString text = readText();
        if (hasFailed())
            return {};
        const auto value = parse(text);
        if (!value) {
            constexpr qsizetype longestQuote = 40;
            fail(u"\"%1\" is no %2."_s.arg(text.trimmed().left(longestQuote), wanted));
            return {};
        }
        return QVariant::fromValue(*value);
    }

    [[nodiscard]] bool hasFailed() const { return !error_.text.isEmpty(); }
    void fail(const QString& text) {
        if (!hasFailed())
            error_ = {text, xml_.lineNumber(), xml_.columnNumber() + 1};
    }

    QXmlStreamReader xml_;
    ParseError error_;
};

/// To the next element's start or end, or to the document's end. Text is an error here.
bool Reader::next() {
    while (!xml_.atEnd() && !hasFailed()) {
        switch (xml_.readNext()) {
            case QXmlStreamReader::StartElement:
            case QXmlStreamReader::EndElement:
            case QXmlStreamReader::EndDocument:
                return !xml_.hasError();
            case QXmlStreamReader::DTD:
                // Entities that a document declares serve only to blow it up.
                if (!xml_.entityDeclarations().isEmpty())
                    fail(u"The document declares entities of its own."_s);
                break;
            case QXmlStreamReader::Characters:
                if (!xml_.isWhitespace())
                    fail(u"There is text where none belongs: \"%1\"."_s.arg(
                        xml_.text().trimmed().left(40)));
                break;
            case QXmlStreamReader::EntityReference:
                fail(u"The entity \"%1\" is not known."_s.arg(xml_.name()));
                break;
            default:
                break;
        }
    }
    if (xml_.hasError())
        fail(xml_.errorString());
    return false;
}

bool Reader::readStart() {
    return next() && xml_.isStartElement();
}

QVariant Reader::readOnlyValue() {
    if (!readStart()) {
        fail(u"The property list is empty."_s);
        return {};
    }
    QVariant value = readValue(0);
    if (!hasFailed() && readStart())
        fail(u"There is a second value, <%1>, behind the first."_s.arg(xml_.name()));
    return value;
}

void Reader::readTail() {
    while (next() && !xml_.isEndDocument()) {
    }
}

QVariant Reader::readValue(int depth) {
    if (depth >= deepestPropertyList) {
        fail(u"The values are nested more than %1 levels deep."_s.arg(deepestPropertyList));
        return {};
    }
    const QStringView name = xml_.name();
    if (name == u"string")
        return readText();
    if (name == u"dict")
        return readDictionary(depth);
    if (name == u"array")
        return readArray(depth);
    if (name == u"true" || name == u"false")
        return readEmpty(name == u"true");
    if (name == u"integer")
        return readScalar(u"integer of 64 bits"_s,
                          [](const QString& text) { return parsedInteger(text.trimmed()); });
    if (name == u"real")
        return readScalar(u"number"_s,
                          [](const QString& text) { return parsedReal(text.trimmed()); });
    if (name == u"date")
        return readScalar(u"date of the form 2000-12-31T23:59:59Z"_s,
                          [](const QString& text) { return parsedDate(text.trimmed()); });
    if (name == u"data")
        return readScalar(u"Base64 text"_s,
                          [](const QString& text) { return parsedData(text.toUtf8()); });
    fail(u"<%1> is no element of property lists."_s.arg(name));
    return {};
}

QVariant Reader::readDictionary(int depth) {
    QVariantMap map;
    while (readStart()) {
        if (xml_.name() != u"key") {
            fail(u"<%1> stands where a <key> is expected."_s.arg(xml_.name()));
            return {};
        }
        const QString key = readText();
        if (!hasFailed() && !readStart())
            fail(u"The key \"%1\" has no value."_s.arg(key));
        if (hasFailed())
            return {};
        map.insert(key, readValue(depth + 1));
    }
    return map;
}

QVariant Reader::readArray(int depth) {
    QVariantList list;
    while (readStart())
        list.append(readValue(depth + 1));
    return list;
}

QVariant Reader::readEmpty(bool value) {
    if (readStart())
        fail(u"There is <%1> where nothing belongs."_s.arg(xml_.name()));
    return value;
}

QString Reader::readText() {
    QString text;
    while (!xml_.atEnd()) {
        switch (xml_.readNext()) {
            case QXmlStreamReader::Characters:
                text.append(xml_.text());
                break;
            case QXmlStreamReader::EndElement:
                return text;
            case QXmlStreamReader::StartElement:
                fail(u"There is <%1> where only text belongs."_s.arg(xml_.name()));
                return {};
            case QXmlStreamReader::EntityReference:
                fail(u"The entity \"%1\" is not known."_s.arg(xml_.name()));
                return {};
            default:
                break;
        }
    }
    fail(xml_.errorString());
    return {};
}

}  // namespace

PropertyListResult readXmlPropertyList(const QByteArray& data) {
    return Reader(data).document();
}

}  // namespace platform
