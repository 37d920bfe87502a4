#pragma once

#include <QString>
#include <optional>

#include "platform/net/url.h"

namespace engine {

class UserSettings;

/// The address of a download and all that is derived from it: names, location, host. What is
/// derived is kept until the address or the name changes, since lists ask for it at each refresh.
class DownloadIdentity {
public:
    DownloadIdentity(platform::Url url, UserSettings& settings);

    [[nodiscard]] const platform::Url& url() const { return _url; }
    [[nodiscard]] QString originalURLString() const;
    void setURL(const platform::Url& url);
    [[nodiscard]] bool isDownloadPageURL();
    void reevaluateDownloadPageURLStatus() { isDownloadPage_.reset(); }
    [[nodiscard]] const QString& queueRelevantHost();
    void invalidateIconAndNameCache();

    void setName(const QString& name);
    [[nodiscard]] QString name();
    [[nodiscard]] QString displayName();
    [[nodiscard]] QString anonymizedName();
    [[nodiscard]] QString sortName();
    [[nodiscard]] QString locationKey();
    [[nodiscard]] std::optional<QString> icon();

    [[nodiscard]] QString pathByCheckingExistence(bool check);
    [[nodiscard]] QString path() { return pathByCheckingExistence(false); }

private:
    [[nodiscard]] QString preservedName(const QString& name) const;
    [[nodiscard]] QString movedPath(const QString& formerPath, bool check);

    UserSettings& settings_;
    platform::Url _url;
    std::optional<bool> isDownloadPage_;
    // Null: not worked out.
    QString _queueRelevantHost;
    QString _locationKey;
    QString _cachedName;
    QString _anonymizedName;
    QString _sortName;
    QString _icon;
};

}  // namespace engine
