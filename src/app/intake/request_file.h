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

/// Nothing: there is no such file, or no usable address in it.
[[nodiscard]] std::optional<RequestFile> readRequestFile(const QString& path);

}  // namespace app
