#include "structured/json_validity.h"

#include <algorithm>
#include <cmath>

#include "structured/bounds.h"
#include "structured/variant_contents.h"

namespace structured {

namespace {

bool isInteger(int type) {
    switch (type) {
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::ULong:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
            return true;
        default:
            return false;
    }
}

bool isValidLeaf(const QVariant& value) {
    const int type = value.typeId();
    switch (type) {
        case QMetaType::QString:
            return contentsOf<QString>(value).isValidUtf16();
        case QMetaType::Double:
            return std::isfinite(value.toDouble());
        case QMetaType::Bool:
        case QMetaType::Nullptr:
            return true;
        default:
            return isInteger(type);
    }
}

bool isValidTree(const QVariant& value, int levelsLeft) {
    if (value.typeId() == QMetaType::QVariantList) {
        const auto& elements = contentsOf<QVariantList>(value);
        return levelsLeft > 0 &&
               std::all_of(elements.begin(), elements.end(), [levelsLeft](const QVariant& element) {
                   return isValidTree(element, levelsLeft - 1);
               });
    }
    if (value.typeId() != QMetaType::QVariantMap)
        return isValidLeaf(value);
    const auto& members = contentsOf<QVariantMap>(value);
    for (auto member = members.begin(); member != members.end(); ++member) {
        if (!member.key().isValidUtf16() || levelsLeft == 0 ||
            !isValidTree(member.value(), levelsLeft - 1)) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool isValidJSONObject(const QVariant& value) {
    const int type = value.typeId();
    return (type == QMetaType::QVariantMap || type == QMetaType::QVariantList) &&
           isValidTree(value, maximumDepth);
}

}  // namespace structured
