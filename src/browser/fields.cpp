#include "browser/fields.h"

#include <QUrl>
#include <algorithm>

namespace browser {

using namespace Qt::Literals::StringLiterals;

namespace {

bool isIdCharacter(QChar c) {
    return (c >= 'a'_L1 && c <= 'z'_L1) || (c >= 'A'_L1 && c <= 'Z'_L1) ||
           (c >= '0'_L1 && c <= '9'_L1) || c == '.'_L1 || c == '_'_L1 || c == '-'_L1;
}

bool isControl(QChar c) {
    return c.unicode() < 0x20 || (c.unicode() >= 0x7f && c.unicode() < 0xa0);
}

bool isAddress(const QString& text) {
    return (text.startsWith("http://"_L1, Qt::CaseInsensitive) ||
            text.startsWith("https://"_L1, Qt::CaseInsensitive)) &&
           !QUrl(text).host().isEmpty() && !text.contains(' '_L1);
}

bool isText(const QVariant& value, qint64 longest) {
    return value.typeId() == QMetaType::QString && value.toString().size() <= longest;
}

bool isLine(const QVariant& value, qint64 longest) {
    if (!isText(value, longest))
        return false;
    const QString text = value.toString();
    return text.isValidUtf16() && std::ranges::none_of(text, isControl);
}

bool fits(const QVariant& value, const Field& field) {
    const QString text = value.toString();
    switch (field.kind) {
        case Field::Kind::Id:
            return isText(value, 128) && !text.isEmpty() &&
                   std::ranges::all_of(text, isIdCharacter);
        case Field::Kind::Address:
            return isLine(value, field.largest) && isAddress(text);
        case Field::Kind::Line:
            return isLine(value, field.largest);
        case Field::Kind::Method:
            return isLine(value, 4) && (text == "GET"_L1 || text == "POST"_L1);
        case Field::Kind::Base64: {
            if (value.typeId() != QMetaType::QString)
                return false;
            const std::optional<QByteArray> bytes = decodedBase64(text);
            return bytes && bytes->size() <= field.largest;
        }
        case Field::Kind::Integer:
            return value.typeId() == QMetaType::LongLong && value.toLongLong() >= 0 &&
                   value.toLongLong() <= field.largest;
        case Field::Kind::Bool:
            return value.typeId() == QMetaType::Bool;
        case Field::Kind::Object:
            return value.typeId() == QMetaType::QVariantMap;
        case Field::Kind::List:
            return value.typeId() == QMetaType::QVariantList &&
                   value.toList().size() <= field.largest;
    }
    return false;
}

}  // namespace

std::optional<QByteArray> decodedBase64(const QString& text) {
    const auto decoded =
        QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? std::optional(*decoded) : std::nullopt;
}

std::optional<QString> problemWithFields(const QVariantMap& object, std::span<const Field> fields) {
    for (const Field& field : fields) {
        const QString name = QString::fromLatin1(field.name);
        const auto value = object.constFind(name);
        if (value == object.constEnd()) {
            if (field.isRequired)
                return u"\"%1\" is missing"_s.arg(name);
        } else if (!fits(*value, field)) {
            return u"\"%1\" is not what it should be"_s.arg(name);
        }
    }
    for (const QString& name : object.keys())
        if (std::ranges::none_of(fields,
                                 [&](const Field& f) { return name == QLatin1StringView(f.name); }))
            return u"a field is not known"_s;
    return std::nullopt;
}

}  // namespace browser
