#include "links/format/formatting_locale.h"

#include <unicode/locid.h>

#include <QtGlobal>

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

QString localeName(const char* category) {
    for (const char* variable : {"LC_ALL", category, "LANG"}) {
        const QString value = qEnvironmentVariable(variable);
        if (value.isEmpty())
            continue;
        if (value == u"C" || value == u"POSIX" || value.startsWith(u"C."))
            break;
        // language_TERRITORY.CHARSET@MODIFIER, of which ICU reads all but the charset.
        const auto locale = icu::Locale::createCanonical(value.toLatin1().constData());
        if (locale.getLanguage()[0] != '\0')
            return QString::fromLatin1(locale.getName());
        break;
    }
    return u"en_US"_s;
}

}  // namespace

QString numberLocaleName() {
    return localeName("LC_NUMERIC");
}

QString dateLocaleName() {
    return localeName("LC_TIME");
}

}  // namespace links
