#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace structured {

/// What stands inside the root dictionary of a property list as our writer lays it out, one level
/// of indentation less. Nothing: the root has no contents or is no dictionary.
[[nodiscard]] std::optional<QString> contentsOfRootDictionary(const QString& propertyList);

/// What stands inside the `plist` element. Nothing: there is no such element.
[[nodiscard]] std::optional<QString> contentsOfPropertyList(const QString& propertyList);

struct WrappedXml {
    QByteArray data;
    /// By how many characters the text's first line was moved to the right.
    qsizetype shift;
};

/// The whole property list for a text whose first tag is a `key`. Nothing: it is no shorthand, or
/// it holds half a surrogate pair.
[[nodiscard]] std::optional<WrappedXml> wrappedXmlShorthand(const QString& shorthand);

}  // namespace structured
