#include <algorithm>

#include "platform/base/utc.h"
#include "platform/net/cookie_date.h"
#include "platform/net/cookie_rules.h"
#include "platform/net/cookie_storage.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

constexpr qsizetype longestCookie = 4096;
constexpr qsizetype longestAttribute = 1024;

struct Pair {
    QString name;
    QString value;
    bool hasValue;
};

Pair splitPair(QStringView text) {
    const qsizetype equals = text.indexOf(u'=');
    if (equals < 0)
        return {text.trimmed().toString(), {}, false};
    return {text.left(equals).trimmed().toString(), text.mid(equals + 1).trimmed().toString(),
            true};
}

bool hasControls(const QString& text) {
    return std::any_of(text.begin(), text.end(), [](QChar c) {
        return (c.unicode() < 0x20 && c != u'\t') || c.unicode() == 0x7f;
    });
}

/// Nothing: not a number (RFC 6265bis).
std::optional<QDateTime> expiryAfter(const QString& seconds) {
    constexpr qint64 tenYears = 10LL * 366 * 86400;
    bool isNumber = false;
    const qint64 count = seconds.toLongLong(&isNumber);
    const bool startsWell = !seconds.isEmpty() && seconds[0] != u'+';
    if (!isNumber || !startsWell)
        return std::nullopt;
    if (count <= 0)
        return QDateTime::fromSecsSinceEpoch(0, utc);
    return QDateTime::currentDateTimeUtc().addSecs(std::min(count, tenYears));
}

class Parser {
public:
    explicit Parser(const Url& url)
        : host_(url.host().toLower()),
          defaultPath_(defaultCookiePath(url.encodedPath())),
          isSecureOrigin_(url.hasScheme("https")) {
        cookie_.path = defaultPath_;
    }

    /// Nothing: to be ignored.
    [[nodiscard]] std::optional<Cookie> parse(const QString& field) {
        const QList<QStringView> parts = QStringView(field).split(u';');
        const Pair first = splitPair(parts.first());
        if (!first.hasValue || first.name.isEmpty() || hasControls(field) ||
            first.name.size() + first.value.size() > longestCookie)
            return std::nullopt;
        cookie_.name = first.name;
        cookie_.value = first.value;
        for (qsizetype i = 1; i < parts.size(); ++i)
            apply(splitPair(parts[i]));
        return takeDomain() && keepsPromises() ? std::optional<Cookie>(cookie_) : std::nullopt;
    }

private:
    void apply(const Pair& attribute) {
        const QString name = attribute.name.toLower();
        const QString& value = attribute.value;
        if (value.size() > longestAttribute)
            return;
        if (name == "secure"_L1)
            cookie_.secure = true;
        else if (name == "httponly"_L1)
            cookie_.httpOnly = true;
        else if (name == "path"_L1)
            takePath(value);
        else if (name == "domain"_L1)
            domain_ = (value.startsWith(u'.') ? value.mid(1) : value).toLower();
        else if (name == "expires"_L1 && !hasMaximumAge_)
            takeExpiry(cookieDate(value));
        else if (name == "max-age"_L1)
            takeMaximumAge(value);
    }

    /// The last one counts, and one that is none restores the default.
    void takePath(const QString& value) {
        hasPath_ = value.startsWith(u'/');
        cookie_.path = hasPath_ ? value : defaultPath_;
    }

    void takeExpiry(const QDateTime& date) {
        if (date.isValid())
            cookie_.expires = date;
    }

    /// It rules over a date, wherever it stands.
    void takeMaximumAge(const QString& seconds) {
        const auto expiry = expiryAfter(seconds);
        hasMaximumAge_ = hasMaximumAge_ || expiry;
        cookie_.expires = expiry.value_or(cookie_.expires);
    }

    /// Only a server that cannot be impersonated may say "Secure", and a name may promise more
    /// (RFC 6265bis).
    [[nodiscard]] bool keepsPromises() const {
        const auto promises = [this](QLatin1String prefix) {
            return cookie_.name.startsWith(prefix, Qt::CaseInsensitive);
        };
        const bool isForHostAlone =
            cookie_.hostOnly && domain_.isEmpty() && hasPath_ && cookie_.path == "/"_L1;
        return (isSecureOrigin_ || !cookie_.secure) &&
               (cookie_.secure || !(promises("__Secure-"_L1) || promises("__Host-"_L1))) &&
               (isForHostAlone || !promises("__Host-"_L1));
    }

    /// False: a foreign domain.
    [[nodiscard]] bool takeDomain() {
        cookie_.domain = host_;
        cookie_.hostOnly = domain_.isEmpty() || (domain_ == host_ && isPublicSuffix(domain_));
        if (cookie_.hostOnly)
            return !host_.isEmpty();
        cookie_.domain = domain_;
        return domainMatches(host_, domain_) && !isPublicSuffix(domain_);
    }

    const QString host_, defaultPath_;
    const bool isSecureOrigin_;
    QString domain_;
    bool hasPath_ = false;
    bool hasMaximumAge_ = false;
    Cookie cookie_;
};

}  // namespace

std::vector<Cookie> cookiesFromHeaders(const HTTPHeaders& headers, const Url& url) {
    std::vector<Cookie> cookies;
    for (const QString& field : headers.values(u"Set-Cookie"_s)) {
        if (auto cookie = Parser(url).parse(field))
            cookies.push_back(std::move(*cookie));
        if (cookies.size() == mostCookiesInDomain)
            break;
    }
    return cookies;
}

}  // namespace platform
