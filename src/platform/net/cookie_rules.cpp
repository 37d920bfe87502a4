#include "platform/net/cookie_rules.h"

#include <libpsl.h>

#include <QHostAddress>

namespace platform {

bool domainMatches(const QString& host, const QString& domain) {
    if (host == domain)
        return true;
    return !domain.isEmpty() && host.endsWith(u'.' + domain) && QHostAddress(host).isNull();
}

bool pathMatches(const QString& requestPath, const QString& cookiePath) {
    return requestPath.startsWith(cookiePath) &&
           (requestPath.size() == cookiePath.size() || cookiePath.endsWith(u'/') ||
            requestPath[cookiePath.size()] == u'/');
}

QString defaultCookiePath(const QString& requestPath) {
    const qsizetype lastSlash = requestPath.lastIndexOf(u'/');
    return requestPath.startsWith(u'/') && lastSlash > 0 ? requestPath.left(lastSlash)
                                                         : QStringLiteral("/");
}

bool isPublicSuffix(const QString& domain) {
    // The list knows no names that are written out to the root.
    const QString name = domain.endsWith(u'.') ? domain.chopped(1) : domain;
    return psl_is_public_suffix(psl_builtin(), name.toUtf8().constData()) != 0;
}

}  // namespace platform
