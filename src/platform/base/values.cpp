#include "platform/base/values.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/files/property_list_kinds.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

qint64 nearestInteger(double number) {
    // The largest integer has no double of its own: its neighbour is one too many.
    constexpr double limit = 9223372036854775808.0;
    if (std::isnan(number))
        return 0;
    if (number >= limit)
        return std::numeric_limits<qint64>::max();
    return number < -limit ? std::numeric_limits<qint64>::min() : static_cast<qint64>(number);
}

qint64 integerFromText(const QString& text) {
    bool isInteger = false;
    const qint64 number = text.trimmed().toLongLong(&isInteger);
    return isInteger ? number : nearestInteger(text.trimmed().toDouble());
}

bool isYes(const QString& text) {
    const QString word = text.trimmed().toLower();
    return word == u"yes" || word == u"y" || word == u"true" || word == u"t" ||
           word.toDouble() != 0;
}

}  // namespace

bool boolValue(const QVariant& value) {
    switch (propertyListKind(value)) {
        case PropertyListKind::Boolean:
        case PropertyListKind::Integer:
        case PropertyListKind::Real:
            return value.toDouble() != 0;
        case PropertyListKind::String:
            return isYes(value.toString());
        default:
            return false;
    }
}

qint64 integerValue(const QVariant& value) {
    switch (propertyListKind(value)) {
        case PropertyListKind::Boolean:
        case PropertyListKind::Integer:
            return value.toLongLong();
        case PropertyListKind::Real:
            return nearestInteger(value.toDouble());
        case PropertyListKind::String:
            return integerFromText(value.toString());
        default:
            return 0;
    }
}

double doubleValue(const QVariant& value) {
    switch (propertyListKind(value)) {
        case PropertyListKind::Boolean:
        case PropertyListKind::Integer:
        case PropertyListKind::Real:
            return value.toDouble();
        case PropertyListKind::String:
            return value.toString().trimmed().toDouble();
        default:
            return 0;
    }
}

QString stringValue(const QVariant& value) {
    switch (propertyListKind(value)) {
        case PropertyListKind::String:
        case PropertyListKind::Integer:
        case PropertyListKind::Real:
            return value.toString();
        case PropertyListKind::Boolean:
            return value.toBool() ? u"1"_s : u"0"_s;
        default:
            return {};
    }
}

QVariantList listValue(const QVariant& value) {
    return propertyListKind(value) == PropertyListKind::Array ? value.toList() : QVariantList();
}

QStringList stringListValue(const QVariant& value) {
    const QVariantList list = listValue(value);
    const bool areStrings = std::all_of(list.begin(), list.end(), [](const QVariant& element) {
        return element.typeId() == QMetaType::QString;
    });
    return areStrings ? value.toStringList() : QStringList();
}

QVariantMap mapValue(const QVariant& value) {
    return propertyListKind(value) == PropertyListKind::Dictionary ? value.toMap() : QVariantMap();
}

}  // namespace platform
