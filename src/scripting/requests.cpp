#include "scripting/requests.h"

#include <QDir>
#include <QRegularExpression>
#include <algorithm>
#include <limits>

#include "engine/record/checksum.h"
#include "engine/record/user_settings.h"
#include "links/names/safe_file_name.h"
#include "links/text/localization.h"
#include "platform/text/ascii.h"

namespace scripting {

namespace keys = engine::keys;
using namespace Qt::Literals::StringLiterals;
using links::localized;

namespace {

constexpr qsizetype longestAddress = 64 << 10;
constexpr qsizetype longestText = 64 << 10;  ///< Of a header or a path.
constexpr qsizetype longestBody = 1 << 20;
constexpr qsizetype longestId = 128;
constexpr qsizetype mostKeys = 64;
constexpr double longestDeadline = 60;

/// Reads a dictionary entry by entry and remembers the first that is not as it should be.
class Entries {
public:
    explicit Entries(const QVariantMap& dictionary) : dictionary_(dictionary) {
        if (dictionary.size() > mostKeys) {
            problem_ = u"these are too many keys"_s;
        }
    }

    [[nodiscard]] QString text(const QString& key, qsizetype longest = longestText) {
        const QString value = take(key, QMetaType::QString).toString();
        if (value.size() > longest) {
            fail(u"\"%1\" is too long"_s.arg(key));
            return {};
        }
        return value;
    }
    /// One that goes into a head: a line break in it would begin another field.
    [[nodiscard]] QString header(const QString& key) {
        const QString value = text(key);
        const bool isClean = std::all_of(value.begin(), value.end(), [](QChar letter) {
            return letter == u'\t' || (letter >= u' ' && letter != QChar(0x7f));
        });
        if (!isClean) {
            fail(u"\"%1\" holds control characters"_s.arg(key));
        }
        return isClean ? value : QString();
    }
    [[nodiscard]] bool flag(const QString& key) { return take(key, QMetaType::Bool).toBool(); }
    [[nodiscard]] QByteArray bytes(const QString& key) {
        const QByteArray value = take(key, QMetaType::QByteArray).toByteArray();
        if (value.size() > longestBody) {
            fail(u"\"%1\" is too long"_s.arg(key));
        }
        return value;
    }
    [[nodiscard]] std::optional<qint64> number(const QString& key) {
        const QVariant value = dictionary_.value(key);
        if (!value.isValid()) {
            return {};
        }
        bool isNumber = false;
        const qint64 number = value.toLongLong(&isNumber);
        if (!isNumber || number < 0 || value.userType() == QMetaType::QString ||
            value.userType() == QMetaType::Bool || value.userType() == QMetaType::Double) {
            fail(u"\"%1\" is no size"_s.arg(key));
            return {};
        }
        return number;
    }

    void fail(const QString& problem) {
        if (problem_.isEmpty()) {
            problem_ = problem;
        }
    }
    [[nodiscard]] const QString& problem() const { return problem_; }

private:
    [[nodiscard]] QVariant take(const QString& key, int type) {
        const QVariant value = dictionary_.value(key);
        if (value.isValid() && value.userType() != type) {
            fail(u"\"%1\" is of another type than agreed"_s.arg(key));
            return {};
        }
        return value;
    }

    const QVariantMap& dictionary_;
    QString problem_;
};

/// Nothing: no server can be asked for it.
std::optional<platform::Url> serverUrl(const QString& address) {
    const QString trimmed = address.trimmed();
    if (trimmed.size() > longestAddress) {
        return {};
    }
    auto url = platform::Url::parse(trimmed);
    if (!url) {
        url = platform::Url::parseLenient(trimmed);
    }
    const QString scheme = url ? url->scheme().toLower() : QString();
    const bool isUsable = (scheme == u"http" || scheme == u"https") && !url->host().isEmpty();
    return isUsable ? url : std::nullopt;
}

QString component(const QString& name) {
    return name.trimmed().isEmpty() ? QString() : links::safeFileName(name);
}

template <typename Value>
Parsed<Value> refused(const QString& problem) {
    return {std::nullopt, problem};
}

template <typename Value>
Parsed<Value> noAddress() {
    return {std::nullopt, localized("no address of http or https"), true};
}

bool isMethod(const QString& method) {
    static const QRegularExpression token(u"\\A[A-Za-z]{1,20}\\z"_s);
    return token.match(method).hasMatch();
}

}  // namespace

Parsed<std::vector<platform::Url>> parsedAddresses(const QStringList& addresses) {
    static const QRegularExpression newlines(u"[\\n-\\r\\x{85}\\x{2028}\\x{2029}]"_s);
    using Urls = std::vector<platform::Url>;
    Urls urls;
    for (const QString& text : addresses) {
        if (text.size() > (mostAddresses * 100)) {
            return refused<Urls>(u"an address is too long"_s);
        }
        for (const QStringView line : QStringView(text).split(newlines)) {
            const QString trimmed = line.trimmed().toString();
            const auto url = platform::Url::parse(trimmed);
            if (trimmed.isEmpty() || trimmed.size() > longestAddress || !url) {
                continue;
            }
            urls.push_back(*url);
            if (urls.size() > static_cast<std::size_t>(mostAddresses)) {
                return refused<Urls>(u"these are too many addresses at once"_s);
            }
        }
    }
    return {std::move(urls)};
}

Parsed<app::ScriptArguments> parsedArguments(const QVariantMap& dictionary) {
    Entries entries(dictionary);
    app::ScriptArguments arguments = app::scriptArgumentsFromDictionary(dictionary);
    static_cast<void>(entries.text(u"toPosixPath"_s));
    static_cast<void>(entries.text(u"byPostingData"_s, longestBody));
    for (const QString& key : {u"withReferrer"_s, u"posingAsUserAgent"_s, u"usingCookies"_s}) {
        static_cast<void>(entries.header(key));
    }
    static const QStringList known{u"toPosixPath"_s, u"byPostingData"_s, u"withReferrer"_s,
                                   u"posingAsUserAgent"_s, u"usingCookies"_s};
    for (const QString& key : dictionary.keys()) {
        if (!known.contains(key)) {
            entries.fail(u"there is no argument \"%1\""_s.arg(key.left(40)));
        }
    }
    if (!entries.problem().isEmpty()) {
        return refused<app::ScriptArguments>(entries.problem());
    }
    return {std::move(arguments)};
}

Parsed<AddRequest> parsedAddRequest(const QString& address, const QVariantMap& options) {
    const auto url = serverUrl(address);
    if (!url) {
        return noAddress<AddRequest>();
    }
    Entries entries(options);
    AddRequest add{*url,
                   entries.text(u"folder"_s),
                   component(entries.text(u"name"_s)),
                   entries.flag(u"paused"_s),
                   {}};
    app::ScriptArguments arguments;
    arguments.byPostingData = entries.text(u"postData"_s, longestBody);
    const auto given = [&](const QString& key) {
        const QString value = entries.header(key);
        return value.isEmpty() ? std::nullopt : std::optional(value);
    };
    arguments.withReferrer = given(u"referrer"_s);
    arguments.posingAsUserAgent = given(u"userAgent"_s);
    arguments.usingCookies = given(u"cookies"_s);
    static const QStringList known{u"folder"_s,   u"name"_s,      u"paused"_s,  u"postData"_s,
                                   u"referrer"_s, u"userAgent"_s, u"cookies"_s, u"checksum"_s};
    for (const QString& key : options.keys()) {
        if (!known.contains(key)) {
            entries.fail(u"there is no option \"%1\""_s.arg(key.left(40)));
        }
    }
    if (const QString text = entries.text(u"checksum"_s); !text.isEmpty()) {
        if (const auto checksum = engine::checksumFromText(text)) {
            add.checksum = checksum->text();
        } else {
            entries.fail(u"\"checksum\" is no MD5, SHA-1 or SHA-2"_s);
        }
    }
    if (!add.folder.isEmpty() && !QDir::isAbsolutePath(add.folder)) {
        entries.fail(u"\"folder\" is no absolute path"_s);
    }
    if (!entries.problem().isEmpty()) {
        return refused<AddRequest>(entries.problem());
    }
    add.request = arguments.request();
    return {std::move(add)};
}

bool isHandOverId(const QString& id) {
    return !id.isEmpty() && id.size() <= longestId &&
           std::all_of(id.begin(), id.end(), [](QChar letter) {
               return platform::isAsciiAlphanumeric(letter) || letter == u'.' || letter == u'_' ||
                      letter == u'-';
           });
}

Parsed<HandOverRequest> parsedHandOver(const QVariantMap& dictionary) {
    Entries entries(dictionary);
    HandOverRequest handOver;
    handOver.id = entries.text(u"id"_s);
    if (!isHandOverId(handOver.id)) {
        return refused<HandOverRequest>(u"\"id\" is no id"_s);
    }
    const auto url = serverUrl(entries.text(u"address"_s, longestAddress));
    static_cast<void>(entries.text(u"finalAddress"_s, longestAddress));
    handOver.name = component(entries.text(u"name"_s));
    handOver.size = entries.number(u"size"_s);
    handOver.isPrivate = entries.flag(u"private"_s);
    handOver.cookies = entries.header(u"cookies"_s);
    if (const auto page = serverUrl(entries.text(u"page"_s, longestAddress))) {
        handOver.page = page->absoluteString();
    }
    if (const auto deadline = entries.number(u"deadline"_s)) {
        handOver.deadline = std::min(static_cast<double>(*deadline) / 1000, longestDeadline);
    }

    QVariantMap headers;
    const auto addHeader = [&](const QString& name, const QString& key) {
        if (const QString value = entries.header(key); !value.isEmpty()) {
            headers[name] = value;
        }
    };
    addHeader(u"Referer"_s, u"referrer"_s);
    addHeader(u"User-Agent"_s, u"userAgent"_s);
    addHeader(u"Content-Type"_s, u"contentType"_s);
    if (!headers.isEmpty()) {
        handOver.request[keys::requestPartialHeaders] = headers;
    }
    if (const QString method = entries.text(u"method"_s); !method.isEmpty()) {
        if (!isMethod(method)) {
            entries.fail(u"\"method\" is no method"_s);
        }
        if (method.toUpper() != u"GET") {
            handOver.request[keys::requestMethod] = method.toUpper();
        }
    }
    if (const QByteArray body = entries.bytes(u"body"_s); !body.isEmpty()) {
        handOver.request[keys::requestBody] = body;
    }
    if (!entries.problem().isEmpty()) {
        return refused<HandOverRequest>(entries.problem());
    }
    if (!url) {
        return noAddress<HandOverRequest>();
    }
    handOver.url = *url;
    return {std::move(handOver)};
}

bool areIdentities(const QStringList& identities) {
    constexpr qsizetype longestIdentity = 64;
    return !identities.isEmpty() && identities.size() <= mostIdentities &&
           std::all_of(identities.begin(), identities.end(), [](const QString& identity) {
               return !identity.isEmpty() && identity.size() <= longestIdentity;
           });
}

}  // namespace scripting
