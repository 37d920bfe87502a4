#include "platform/base/arguments.h"

#include <algorithm>
#include <array>

#include "platform/files/property_list.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

ParsedArguments parseArguments(const QStringList& arguments) {
    ParsedArguments parsed;
    qsizetype i = 0;
    for (; i < arguments.size() && arguments[i] != u"--"; ++i) {
        const QString& argument = arguments[i];
        const bool isKey = argument.size() > 1 && argument[0] == u'-' && argument[1] != u'-';
        if (isKey && i + 1 < arguments.size()) {
            const QString& text = arguments[++i];
            parsed.defaults.insert(argument.mid(1), valueFromText(text).value_or(text));
        } else {
            parsed.rest.append(argument);
        }
    }
    parsed.verbatimStart = parsed.rest.size();
    parsed.rest += arguments.mid(i + 1);
    return parsed;
}

std::optional<QVariant> valueFromText(const QString& text) {
    static constexpr std::array<QStringView, 9> elements{u"<array",   u"<dict", u"<string",
                                                         u"<integer", u"<real", u"<true",
                                                         u"<false",   u"<data", u"<date"};
    const QString trimmed = text.trimmed();
    const auto startsText = [&](QStringView start) { return trimmed.startsWith(start); };
    const bool isElement = std::any_of(elements.begin(), elements.end(), startsText);
    if (!isElement && !startsText(u"<plist") && !startsText(u"<?xml"))
        return text;
    const QString document = isElement ? u"<plist>"_s + trimmed + u"</plist>"_s : trimmed;
    const QVariant value = readPropertyList(document.toUtf8()).value;
    return value.isValid() ? std::optional(value) : std::nullopt;
}

}  // namespace platform
