#pragma once

#include <QString>
#include <memory>
#include <optional>

#include "platform/net/url.h"

namespace engine {

class UserSettings;
struct Context;

/// The address of a download and all that is derived from it: names, location, host. What is
/// derived is kept until the address or the name changes, since lists ask for it at each refresh.
class DownloadIdentity {
public:
    DownloadIdentity(const Context& context, platform::Url url, UserSettings& settings);

    [[nodiscard]] const platform::Url& url() const { return _url; }
    [[nodiscard]] QString originalURLString() const;
    void setURL(const platform::Url& url);
    [[nodiscard]] bool isDownloadPageURL() const;
    void reevaluateDownloadPageURLStatus() { isDownloadPage_.reset(); }
    [[nodiscard]] const QString& queueRelevantHost() const;
    void invalidateIconAndNameCache();

    void setName(const QString& name);
    [[nodiscard]] QString name() const;
    [[nodiscard]] QString displayName() const;
    [[nodiscard]] QString anonymizedName() const;
    [[nodiscard]] QString sortName() const;
    [[nodiscard]] QString locationKey() const;
    [[nodiscard]] std::optional<QString> icon() const;

    /// See `DownloadRecord`.
    [[nodiscard]] QString path() const;
    QString findFile();

private:
    [[nodiscard]] QString preservedName(const QString& name) const;
    QString findMovedFile(const QString& formerPath);

    const Context& context_;
    UserSettings& settings_;
    platform::Url _url;
    /// What is asked for those that are shown. Null texts: not worked out.
    struct Shown {
        QString locationKey;
        QString name;
        QString anonymizedName;
        QString sortName;
        QString icon;
    };
    [[nodiscard]] Shown& shown() const;

    mutable std::unique_ptr<Shown> shown_;  ///< Null: nothing is worked out.
    mutable QString _queueRelevantHost;     ///< The same.
    mutable std::optional<bool> isDownloadPage_;
};

}  // namespace engine
