#include "platform/base/user_defaults.h"
#include "platform/files/property_list.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// The wrapper tells archived data from a binary property list that somebody stored as data.
const QString wrapperKey = u"Orlop Archive"_s;

}  // namespace

QByteArray archivedData(const QVariant& value) {
    return writePropertyList(QVariantMap{{wrapperKey, value}}, PropertyListFormat::Binary);
}

QVariant valueFromArchivedData(const QByteArray& data) {
    const PropertyListResult wrapper = readPropertyList(data);
    if (wrapper.format != PropertyListFormat::Binary)
        return {};
    return wrapper.value.toMap().value(wrapperKey);
}

}  // namespace platform
