#include "http/shared/session_credentials.h"

#include <algorithm>

namespace http {

namespace {

constexpr std::size_t mostEntries = 1000;

bool leadsToSameServer(const platform::Url& a, const platform::Url& b) {
    return a.host().compare(b.host(), Qt::CaseInsensitive) == 0 && a.port() == b.port() &&
           a.scheme().compare(b.scheme(), Qt::CaseInsensitive) == 0;
}

bool fits(const SessionEntry& entry, const SessionSearch& search) {
    const bool isOtherRealm = !search.authenticationRealm.isEmpty() &&
                              !entry.authenticationRealm.isEmpty() &&
                              search.authenticationRealm != entry.authenticationRealm;
    const bool isOtherUser =
        !search.username.isEmpty() && search.username != entry.credentials->username;
    const bool isOtherPassword =
        !search.password.isEmpty() && search.password != entry.credentials->password;
    return !isOtherRealm && !isOtherUser && !isOtherPassword;
}

}  // namespace

void SessionEntries::store(SessionEntry entry) {
    const std::scoped_lock guard(sessionCredentialsLock_);
    removeUnderLock(entry.credentials);
    if (entries_.size() >= mostEntries)
        entries_.erase(entries_.begin());
    entries_.push_back(std::move(entry));
}

void SessionEntries::remove(const Credentials& credentials) {
    const std::scoped_lock guard(sessionCredentialsLock_);
    removeUnderLock(credentials);
}

void SessionEntries::removeUnderLock(const Credentials& credentials) {
    const auto entry =
        std::find_if(entries_.begin(), entries_.end(),
                     [&](const SessionEntry& stored) { return stored.credentials == credentials; });
    if (entry != entries_.end())
        entries_.erase(entry);
}

void SessionEntries::clear() {
    const std::scoped_lock guard(sessionCredentialsLock_);
    entries_.clear();
}

std::optional<SessionEntry> findSessionEntry(const SessionEntries& entries,
                                             const SessionSearch& search) {
    const auto exact = entries.first(
        [&](const SessionEntry& entry) { return entry.url == search.url && fits(entry, search); });
    if (exact)
        return exact;
    return entries.first([&](const SessionEntry& entry) {
        return leadsToSameServer(entry.url, search.url) && fits(entry, search);
    });
}

}  // namespace http
