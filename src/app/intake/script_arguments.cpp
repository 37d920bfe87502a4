#include "app/intake/script_arguments.h"

#include <algorithm>

#include "engine/record/user_settings.h"
#include "platform/text/ascii.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

bool ScriptArguments::isEmpty() const {
    return toPosixPath.isEmpty() && byPostingData.isEmpty() && !withReferrer &&
           !posingAsUserAgent && !usingCookies;
}

QVariantMap ScriptArguments::request() const {
    QVariantMap request, headers;
    if (!byPostingData.isEmpty() && platform::isAscii(byPostingData)) {
        request[engine::keys::requestBody] = byPostingData.toLatin1();
        request[engine::keys::requestMethod] = u"POST"_s;
        headers[u"Content-Type"_s] = u"application/x-www-form-urlencoded"_s;
    }
    if (withReferrer) {
        headers[u"Referer"_s] = *withReferrer;
    }
    if (posingAsUserAgent) {
        headers[u"User-Agent"_s] = *posingAsUserAgent;
    }
    if (usingCookies) {
        headers[u"Cookie"_s] = *usingCookies;
    }
    if (!headers.isEmpty()) {
        request[engine::keys::requestPartialHeaders] = headers;
    }
    return request;
}

ScriptArguments scriptArgumentsFromDictionary(const QVariantMap& dictionary) {
    const auto text = [&](const QString& key) -> std::optional<QString> {
        const QVariant value = dictionary.value(key);
        return value.userType() == QMetaType::QString ? std::optional(value.toString())
                                                      : std::nullopt;
    };
    return {text(u"toPosixPath"_s).value_or(QString()),
            text(u"byPostingData"_s).value_or(QString()),
            text(u"withReferrer"_s),
            text(u"posingAsUserAgent"_s),
            text(u"usingCookies"_s),
            true};
}

}  // namespace app
