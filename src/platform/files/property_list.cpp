#include "platform/files/property_list.h"

#include <QDateTime>
#include <limits>

#include "platform/files/binary_property_list.h"
#include "platform/files/property_list_kinds.h"
#include "platform/files/xml_property_list.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

bool isWritableDate(const QDateTime& date) {
    constexpr int lastYear = 9999;
    const int year = date.toUTC().date().year();
    return date.isValid() && year >= 1 && year <= lastYear;
}

QVariant propertyListDictionary(const QVariantMap& map) {
    QVariantMap result;
    for (auto entry = map.begin(); entry != map.end(); ++entry) {
        const QVariant value = propertyListValue(entry.value());
        if (!value.isValid())
            return {};
        result.insert(result.cend(), entry.key(), value);
    }
    return result;
}

QVariant propertyListArray(const QVariantList& list) {
    QVariantList result;
    result.reserve(list.size());
    for (const QVariant& element : list) {
        QVariant value = propertyListValue(element);
        if (!value.isValid())
            return {};
        result.append(std::move(value));
    }
    return result;
}

/// In the one type of those that it fits.
QVariant integerVariant(const QVariant& value) {
    const bool isLarge = isLargeInteger(value);
    return isLarge ? QVariant(value.toULongLong()) : QVariant(value.toLongLong());
}

}  // namespace

bool isLargeInteger(const QVariant& value) {
    return (value.typeId() == QMetaType::ULongLong || value.typeId() == QMetaType::ULong) &&
           value.toULongLong() > quint64{std::numeric_limits<qint64>::max()};
}

PropertyListKind propertyListKind(const QVariant& value) {
    switch (value.typeId()) {
        case QMetaType::QVariantMap:
            return PropertyListKind::Dictionary;
        case QMetaType::QVariantList:
        case QMetaType::QStringList:
            return PropertyListKind::Array;
        case QMetaType::QString:
            return PropertyListKind::String;
        case QMetaType::Bool:
            return PropertyListKind::Boolean;
        case QMetaType::Double:
        case QMetaType::Float:
            return PropertyListKind::Real;
        case QMetaType::ULong:
        case QMetaType::ULongLong:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::LongLong:
        case QMetaType::Short:
        case QMetaType::UShort:
            return PropertyListKind::Integer;
        case QMetaType::QByteArray:
            return PropertyListKind::Data;
        case QMetaType::QDateTime:
            return isWritableDate(value.toDateTime()) ? PropertyListKind::Date
                                                      : PropertyListKind::None;
        default:
            return PropertyListKind::None;
    }
}

QVariant propertyListValue(const QVariant& value) {
    switch (propertyListKind(value)) {
        case PropertyListKind::None:
            return {};
        case PropertyListKind::Dictionary:
            return propertyListDictionary(value.toMap());
        case PropertyListKind::Array:
            return propertyListArray(value.toList());
        case PropertyListKind::Integer:
            return integerVariant(value);
        case PropertyListKind::Real:
            return value.toDouble();
        case PropertyListKind::Date:
            return value.toDateTime().toUTC();
        case PropertyListKind::String:
        case PropertyListKind::Boolean:
        case PropertyListKind::Data:
            return value;
    }
    return {};
}

PropertyListResult readPropertyList(const QByteArray& data, qint64 maximumBytes,
                                    DuplicateKeys duplicateKeys) {
    const bool isBinary = data.startsWith("bplist");
    const PropertyListFormat format =
        isBinary ? PropertyListFormat::Binary : PropertyListFormat::Xml;
    if (data.size() > maximumBytes)
        return {{}, format, {u"It is larger than %1 MiB."_s.arg(maximumBytes >> 20), 0, 0}};
    return isBinary ? readBinaryPropertyList(data) : readXmlPropertyList(data, duplicateKeys);
}

QByteArray writePropertyList(const QVariant& value, PropertyListFormat format) {
    return format == PropertyListFormat::Binary ? writeBinaryPropertyList(value)
                                                : writeXmlPropertyList(value);
}

}  // namespace platform
