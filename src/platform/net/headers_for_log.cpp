#include "platform/net/headers_for_log.h"

#include <QStringList>
#include <algorithm>
#include <array>

#include "platform/net/http_challenge.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

/// Parts of the names of fields whose values are secrets: "Set-Cookie", "Proxy-Authorization",
/// "Authentication-Info", "X-Auth-Token", "X-API-Key".
constexpr std::array secretNames{"cookie"_L1, "authorization"_L1, "authentication"_L1, "token"_L1,
                                 "api-key"_L1};

bool isSecret(const QString& name) {
    return std::any_of(secretNames.begin(), secretNames.end(), [&](QLatin1String part) {
        return name.contains(part, Qt::CaseInsensitive);
    });
}

QString schemesOf(const QString& challenges) {
    QStringList schemes;
    for (const HTTPChallenge& challenge : challengesFromFields({challenges}))
        schemes.append(challenge.scheme);
    return schemes.join(u", "_s);
}

QString valueForLog(const HTTPHeaders::Field& field) {
    const auto& [name, value] = field;
    if (name.endsWith("-Authenticate"_L1, Qt::CaseInsensitive))
        return schemesOf(value);
    return isSecret(name) ? u"..."_s : value;
}

}  // namespace

QString headersForLog(const HTTPHeaders& headers) {
    QStringList lines;
    for (const auto& field : headers.fields())
        lines.append(field.first + u": "_s + valueForLog(field));
    return lines.join(u"; "_s);
}

}  // namespace platform
