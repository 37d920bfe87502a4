#include "structured/json/special_values.h"

#include <QDateTime>

#include "platform/base/log.h"
#include "platform/base/utc.h"

using namespace Qt::Literals::StringLiterals;

namespace structured {

namespace {

constexpr auto dataPrefix = "data:"_L1;
constexpr auto datePrefix = "date:"_L1;
const auto dateFormat = u"yyyy-MM-dd'T'HH:mm:ss'Z'"_s;

bool hasSpecialPrefix(const QString& text) {
    return text.startsWith(dataPrefix, Qt::CaseInsensitive) ||
           text.startsWith(datePrefix, Qt::CaseInsensitive);
}

/// Replaces each leaf of a tree by what `convert` makes of it, if that is valid.
template <typename Convert>
void replaceLeaves(QVariant& tree, const Convert& convert) {
    if (tree.typeId() == QMetaType::QVariantMap) {
        QVariantMap members = tree.toMap();
        tree.clear();
        for (QVariant& member : members)
            replaceLeaves(member, convert);
        tree = members;
    } else if (tree.typeId() == QMetaType::QVariantList) {
        QVariantList elements = tree.toList();
        tree.clear();
        for (QVariant& element : elements)
            replaceLeaves(element, convert);
        tree = elements;
    } else if (QVariant replacement = convert(tree); replacement.isValid()) {
        tree = std::move(replacement);
    }
}

QVariant stringFromSpecialValue(const QVariant& value) {
    switch (value.typeId()) {
        case QMetaType::QByteArray:
            return QString(dataPrefix + QLatin1StringView(value.toByteArray().toBase64()));
        case QMetaType::QDateTime:
            return QString(datePrefix + value.toDateTime().toUTC().toString(dateFormat));
        default:
            return {};
    }
}

QVariant dataFromText(const QString& text) {
    const auto decoded = QByteArray::fromBase64Encoding(
        text.toUtf8(), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? QVariant(*decoded) : QVariant();
}

QVariant dateFromText(const QString& text) {
    QDateTime date = QDateTime::fromString(text, dateFormat);
    date = QDateTime(date.date(), date.time(), platform::utc);
    return date.isValid() ? QVariant(date) : QVariant();
}

}  // namespace

SpecialValues convertSpecialValuesToStrings(QVariant& tree) {
    SpecialValues outcome = SpecialValues::Unchanged;
    replaceLeaves(tree, [&outcome](const QVariant& leaf) -> QVariant {
        if (leaf.typeId() == QMetaType::QString && hasSpecialPrefix(leaf.toString())) {
            platform::log(u"prefix precludes unambiguous conversion: <%1>"_s.arg(leaf.toString()));
            outcome = SpecialValues::Refused;
            return {};
        }
        QVariant string = stringFromSpecialValue(leaf);
        if (string.isValid() && outcome == SpecialValues::Unchanged)
            outcome = SpecialValues::Converted;
        return string;
    });
    return outcome;
}

void convertSpecialValuesFromStrings(QVariant& tree) {
    replaceLeaves(tree, [](const QVariant& leaf) -> QVariant {
        if (leaf.typeId() == QMetaType::Nullptr)
            return qint64{0};
        return leaf.typeId() == QMetaType::QString ? specialValueFromString(leaf.toString())
                                                   : QVariant();
    });
}

QVariant specialValueFromString(const QString& text) {
    constexpr qsizetype shortest = 6;
    if (text.size() < shortest)
        return {};
    const QString rest = text.mid(dataPrefix.size()).trimmed();
    if (text.startsWith(dataPrefix, Qt::CaseInsensitive))
        return dataFromText(rest);
    return text.startsWith(datePrefix, Qt::CaseInsensitive) ? dateFromText(rest) : QVariant();
}

}  // namespace structured
