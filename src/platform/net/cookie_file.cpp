#include "platform/net/cookie_file.h"

#include <cerrno>

#include "platform/base/log.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"
#include "platform/net/cookie_storage.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

const QString nameKey = u"Name"_s;
const QString valueKey = u"Value"_s;
const QString domainKey = u"Domain"_s;
const QString pathKey = u"Path"_s;
const QString expiresKey = u"Expires"_s;
const QString hostOnlyKey = u"Host Only"_s;
const QString secureKey = u"Secure"_s;
const QString httpOnlyKey = u"HTTP Only"_s;

QVariantMap dictionaryOf(const Cookie& cookie) {
    return {{nameKey, cookie.name},       {valueKey, cookie.value},
            {domainKey, cookie.domain},   {pathKey, cookie.path},
            {expiresKey, cookie.expires}, {hostOnlyKey, cookie.hostOnly},
            {secureKey, cookie.secure},   {httpOnlyKey, cookie.httpOnly}};
}

Cookie cookieOf(const QVariantMap& dictionary) {
    Cookie cookie;
    cookie.name = dictionary.value(nameKey).toString();
    cookie.value = dictionary.value(valueKey).toString();
    cookie.domain = dictionary.value(domainKey).toString();
    cookie.path = dictionary.value(pathKey).toString();
    cookie.expires = dictionary.value(expiresKey).toDateTime();
    cookie.hostOnly = dictionary.value(hostOnlyKey).toBool();
    cookie.secure = dictionary.value(secureKey).toBool();
    cookie.httpOnly = dictionary.value(httpOnlyKey).toBool();
    return cookie;
}

}  // namespace

std::optional<std::vector<Cookie>> readCookieFile(const QString& path) {
    constexpr qint64 largestFile = 64LL * 1024 * 1024;
    const FileContents contents = readFile(path, largestFile);
    if (contents.error && contents.error->is(posixErrorDomain, ENOENT))
        return std::vector<Cookie>();
    if (contents.error) {
        logUnreadableFile(path, *contents.error);
        return std::nullopt;
    }
    const QVariant list = readPropertyList(contents.data).value;
    if (list.typeId() != QMetaType::QVariantList) {
        keepDamagedFileAside(path);
        return std::vector<Cookie>();
    }
    std::vector<Cookie> cookies;
    for (const QVariant& each : list.toList()) {
        Cookie cookie = cookieOf(each.toMap());
        if (!cookie.name.isEmpty() && !cookie.domain.isEmpty() && cookie.expires.isValid())
            cookies.push_back(std::move(cookie));
    }
    return cookies;
}

void writeCookieFile(const QString& path, const std::vector<Cookie>& cookies) {
    QVariantList list;
    for (const Cookie& cookie : cookies)
        list.append(dictionaryOf(cookie));
    if (const auto error = writeFileAtomically(path, writePropertyList(list)))
        log(u"The cookies cannot be saved: %1"_s.arg(error->text), LogLevel::Error);
}

}  // namespace platform
