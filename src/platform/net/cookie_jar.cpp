#include "platform/net/cookie_jar.h"

#include <algorithm>

#include "platform/net/cookie_rules.h"

namespace platform {

namespace {

bool isExpired(const Cookie& cookie, const QDateTime& now) {
    return cookie.expires.isValid() && cookie.expires <= now;
}

struct Target {
    QString host, path;
    bool isSecure;
    QDateTime now;
};

/// RFC 6265, 5.4, step 1.
bool belongs(const Cookie& cookie, const Target& target) {
    const bool isForHost =
        cookie.hostOnly ? cookie.domain == target.host : domainMatches(target.host, cookie.domain);
    return isForHost && pathMatches(target.path, cookie.path) &&
           (target.isSecure || !cookie.secure) && !isExpired(cookie, target.now);
}

}  // namespace

std::vector<Cookie> CookieJar::cookiesFor(const Url& url) {
    const Target target{url.host().toLower(),
                        url.encodedPath().isEmpty() ? QStringLiteral("/") : url.encodedPath(),
                        url.hasScheme("https"), QDateTime::currentDateTimeUtc()};
    std::vector<const Entry*> found;
    // The host's own cookies, then those of each domain above it.
    QString name = target.host;
    while (!name.isEmpty()) {
        if (const auto domain = domains_.find(name); domain != domains_.end()) {
            for (Entry& entry : domain->second) {
                if (!belongs(entry.cookie, target))
                    continue;
                entry.lastUsed = ++clock_;
                found.push_back(&entry);
            }
        }
        const qsizetype dot = name.indexOf(u'.');
        name = dot < 0 ? QString() : name.mid(dot + 1);
    }
    std::sort(found.begin(), found.end(), [](const Entry* a, const Entry* b) {
        return a->cookie.path.size() != b->cookie.path.size()
                   ? a->cookie.path.size() > b->cookie.path.size()
                   : a->created < b->created;
    });
    std::vector<Cookie> cookies;
    std::transform(found.begin(), found.end(), std::back_inserter(cookies),
                   [](const Entry* entry) { return entry->cookie; });
    return cookies;
}

bool CookieJar::set(Cookie cookie) {
    Domain& domain = domains_[cookie.domain];
    const auto old = std::find_if(domain.begin(), domain.end(), [&cookie](const Entry& entry) {
        return entry.cookie.isSameCookie(cookie);
    });
    const bool wasPersistent = old != domain.end() && old->cookie.expires.isValid();
    if (isExpired(cookie, QDateTime::currentDateTimeUtc()))
        return remove(cookie);
    const bool isPersistent = cookie.expires.isValid();
    ++clock_;
    if (old != domain.end()) {
        old->cookie = std::move(cookie);
        old->lastUsed = clock_;
    } else {
        const QString name = cookie.domain;
        domain.push_back({std::move(cookie), clock_, clock_});
        ++count_;
        makeRoom(name);
    }
    return wasPersistent || isPersistent;
}

bool CookieJar::remove(const Cookie& cookie) {
    const auto domain = domains_.find(cookie.domain);
    if (domain == domains_.end())
        return false;
    bool wasPersistent = false;
    count_ -= std::erase_if(domain->second, [&](const Entry& entry) {
        const bool isSame = entry.cookie.isSameCookie(cookie);
        wasPersistent = wasPersistent || (isSame && entry.cookie.expires.isValid());
        return isSame;
    });
    if (domain->second.empty())
        domains_.erase(domain);
    return wasPersistent;
}

bool CookieJar::hidesSecureCookie(const Cookie& cookie) const {
    const auto isHidden = [&cookie](const Entry& entry) {
        const Cookie& kept = entry.cookie;
        return kept.secure && kept.name == cookie.name && pathMatches(cookie.path, kept.path);
    };
    return std::any_of(domains_.begin(), domains_.end(), [&](const auto& each) {
        const auto& [name, domain] = each;
        return (domainMatches(cookie.domain, name) || domainMatches(name, cookie.domain)) &&
               std::any_of(domain.begin(), domain.end(), isHidden);
    });
}

void CookieJar::makeRoom(const QString& domain) {
    const auto older = [](const Entry& a, const Entry& b) { return a.lastUsed < b.lastUsed; };
    const auto dropOldest = [&](std::map<QString, Domain>::iterator place) {
        place->second.erase(std::min_element(place->second.begin(), place->second.end(), older));
        --count_;
        if (place->second.empty())
            domains_.erase(place);
    };
    const auto own = domains_.find(domain);
    if (own->second.size() > mostCookiesInDomain)
        dropOldest(own);
    if (count_ <= mostCookies)
        return;
    const auto oldestOf = [&](const Domain& list) {
        return std::min_element(list.begin(), list.end(), older)->lastUsed;
    };
    dropOldest(std::min_element(
        domains_.begin(), domains_.end(),
        [&](const auto& a, const auto& b) { return oldestOf(a.second) < oldestOf(b.second); }));
}

std::vector<Cookie> CookieJar::persistentCookies() const {
    const QDateTime now = QDateTime::currentDateTimeUtc();
    std::vector<Cookie> cookies;
    for (const auto& [name, domain] : domains_) {
        for (const Entry& entry : domain) {
            if (entry.cookie.expires.isValid() && !isExpired(entry.cookie, now))
                cookies.push_back(entry.cookie);
        }
    }
    return cookies;
}

}  // namespace platform
