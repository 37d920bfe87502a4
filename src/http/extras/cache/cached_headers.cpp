#include "http/extras/cache/cached_headers.h"

#include <QRegularExpression>

#include "http/content/http_date.h"
#include "http/extras/cache/response_cache.h"
#include "platform/files/property_list.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::HTTPHeaders;
using platform::Seconds;

HTTPHeaders CachedHeaders::merged() const {
    HTTPHeaders all = headers;
    all.set(cacheStatusCodeField, QString::number(statusCode));
    if (expires)
        all.set(cacheExpiresField, QString::number(*expires, 'f', 3));
    return all;
}

QByteArray encodedCachedHeaders(const CachedHeaders& cached) {
    QVariantMap values;
    for (const auto& [name, value] : cached.headers.fields()) {
        const QStringList all = cached.headers.values(name);
        values[name] = all.size() > 1 ? QVariant(all) : QVariant(value);
    }
    values[cacheStatusCodeField] = cached.statusCode;
    if (cached.expires)
        values[cacheExpiresField] = *cached.expires;
    return platform::writePropertyList(platform::propertyListValue(values));
}

std::optional<CachedHeaders> decodedCachedHeaders(const QByteArray& data) {
    const QVariant list = platform::readPropertyList(data).value;
    if (list.typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    QVariantMap values = list.toMap();
    CachedHeaders cached;
    cached.statusCode = values.take(cacheStatusCodeField).toInt();
    if (const QVariant expires = values.take(cacheExpiresField); expires.isValid())
        cached.expires = expires.toDouble();
    for (auto field = values.cbegin(); field != values.cend(); ++field)
        for (const QString& value : field->toStringList())
            cached.headers.add(field.key(), value);
    return cached;
}

std::optional<Seconds> expiryDate(const HTTPHeaders& headers, Seconds maxAge, Seconds now) {
    if (maxAge == 0) {
        static const QRegularExpression pattern(u"max-age\\s*=\\s*(-?\\d{1,18})"_s);
        const auto control = headers.value(u"Cache-Control"_s).value_or(QString()).toLower();
        maxAge = pattern.match(control).captured(1).toDouble();
    }
    if (maxAge != 0)
        return now + maxAge;
    const auto date = dateFromRFC1123String(headers.value(u"Expires"_s).value_or(QString()));
    if (!date)
        return std::nullopt;
    return static_cast<Seconds>(date->toMSecsSinceEpoch()) / 1000;
}

bool serverAllowsResponseCaching(const HTTPHeaders& headers) {
    const auto is = [&](const QString& name, const QString& word) {
        return headers.value(name).value_or(QString()).toLower() == word;
    };
    return !is(u"Cache-Control"_s, u"no-cache"_s) && !is(u"Cache-Control"_s, u"no-store"_s) &&
           !is(u"Pragma"_s, u"no-cache"_s);
}

}  // namespace http
