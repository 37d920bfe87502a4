#pragma once

#include <QString>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/net/http_authentication.h"

namespace http {

using Credentials = std::shared_ptr<const platform::HTTPCredentials>;

/// What has let somebody in during this run.
struct SessionEntry {
    /// Null: a Basic header that was sent ahead of any challenge.
    std::shared_ptr<platform::HTTPAuthentication> authentication;
    Credentials credentials;
    QString authenticationScheme;
    QString authenticationRealm;  ///< Empty: none. Servers only.
    platform::Url url;            ///< Servers only.
    QString host;                 ///< Proxies only, as is the port.
    int port = 0;
};

/// Entries of one kind, the oldest first; never on disk. Past 1000 the oldest are forgotten. Any
/// thread.
class SessionEntries {
public:
    /// Takes the place of the entry with the identical credentials.
    void store(SessionEntry entry);
    /// The entry with the identical credentials, whatever their values.
    void remove(const Credentials& credentials);
    void clear();

    template <typename Predicate>
    [[nodiscard]] std::optional<SessionEntry> first(Predicate isWanted) const {
        const std::scoped_lock guard(sessionCredentialsLock_);
        for (const SessionEntry& entry : entries_) {
            if (isWanted(entry))
                return entry;
        }
        return std::nullopt;
    }

private:
    void removeUnderLock(const Credentials& credentials);

    mutable std::recursive_mutex sessionCredentialsLock_;  ///< Guards the list.
    std::vector<SessionEntry> entries_;
};

/// What a request looks for. Empty texts: anything will do.
struct SessionSearch {
    platform::Url url;
    QString authenticationRealm;
    QString username, password;
};

/// For the very address if there is one, else the first for its scheme, host and port.
[[nodiscard]] std::optional<SessionEntry> findSessionEntry(const SessionEntries& entries,
                                                           const SessionSearch& search);

}  // namespace http
