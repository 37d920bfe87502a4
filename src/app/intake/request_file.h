#pragma once

#include <QString>
#include <QVariantMap>
#include <optional>

#include "platform/net/url.h"

namespace app {

/// What a browser hands over in an .obp file: a property-list dictionary.
struct RequestFile {
    platform::Url url;
    QString targetPath;   ///< Abbreviated with a tilde. Empty: none.
    QVariantMap request;  ///< All else that the file holds.
};

/// Nothing: the data is no such dictionary, or has no usable address.
[[nodiscard]] std::optional<RequestFile> requestFileFromData(const QByteArray& data);
/// Nothing also if there is no such file.
[[nodiscard]] std::optional<RequestFile> readRequestFile(const QString& path);

}  // namespace app
