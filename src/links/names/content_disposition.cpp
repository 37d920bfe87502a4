#include "links/names/content_disposition.h"

#include "links/paths/path_components.h"
#include "links/repair/percent_escapes.h"
#include "links/text/localization.h"
#include "links/text/trimming.h"
#include "platform/base/log.h"
#include "platform/text/regular_expression.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

/// Far beyond any name; what stands behind it is not looked at.
constexpr qsizetype longestField = 16384;

QString capture(const platform::RegularExpression& expression, const QString& field) {
    // A copy, since one object serves one thread at a time.
    return platform::RegularExpression(expression).firstCapture(field, 1).value_or(QString());
}

QString extendedName(const QString& field) {
    static const platform::RegularExpression form(u"filename\\*\\s*=\\s*utf-8'[^']*'([^;]+)"_s);
    return lastPathComponent(
        stringByReplacingPercentEscapesIfNecessary(trimmedString(capture(form, field))));
}

QString quotedName(const QString& field) {
    static const platform::RegularExpression form(uR"/(filename\s*=\s*"(.*?[^\\](?:\\\\)*)")/"_s);
    return lastPathComponent(trimmedString(capture(form, field)));
}

bool isWrappedIn(QChar quote, const QString& text) {
    return text.size() >= 2 && text.startsWith(quote) && text.endsWith(quote);
}

QString tokenName(const QString& field) {
    const QString key = u"filename"_s;
    const qsizetype index = field.indexOf(key, 0, Qt::CaseInsensitive);
    if (index < 0)
        return {};
    const QString rest = trimmedString(field.mid(index + key.size()));
    if (rest.size() < 2 || !rest.startsWith(u'='))
        return {};
    QString name = trimmedString(rest.mid(1));
    if (isWrappedIn(u'"', name) || isWrappedIn(u'\'', name))
        name = name.mid(1, name.size() - 2);
    return lastPathComponent(name);
}

}  // namespace

QString filenameFromContentDisposition(const QString& field) {
    // Most answers have none, and the first expression of a run costs more than a small transfer.
    if (!field.contains(u"filename", Qt::CaseInsensitive))
        return {};
    struct Form {
        QString (*name)(const QString&);
        const char16_t* logFormat;
    };
    static constexpr Form forms[] = {{extendedName, u"filename*: <%@>"},
                                     {quotedName, u"filename (quoted): <%@>"},
                                     {tokenName, u"filename (token): <%@>"}};
    const QString bounded = field.left(longestField);
    for (const Form& form : forms) {
        const QString name = form.name(bounded);
        if (name.isEmpty())
            continue;
        platform::debugLog(
            [&] { return filledFormat(QString::fromUtf16(form.logFormat), {name}); });
        return name;
    }
    return {};
}

}  // namespace links
