#include "help/default_link.h"

#include "links/text/localization.h"

using namespace Qt::Literals::StringLiterals;

namespace help {

namespace {

QVariant valueOf(const QString& text) {
    const QString lower = text.toLower();
    if (text.isEmpty())
        return {};
    if (lower == "yes"_L1 || lower == "true"_L1)
        return true;
    if (lower == "no"_L1 || lower == "false"_L1)
        return false;
    const qsizetype colon = lower.indexOf(u':');
    const QString number = text.sliced(colon + 1);
    if (lower.startsWith("integer:"_L1) && !number.isEmpty())
        return number.toLongLong();
    if (lower.startsWith("double:"_L1) && !number.isEmpty())
        return number.toDouble();
    return text;
}

void store(platform::UserDefaults& defaults, const QString& key, const QVariant& value) {
    if (value.isValid())
        defaults.setObject(key, value);
    else
        defaults.removeObject(key);
}

}  // namespace

std::optional<DefaultLink> parsedDefaultLink(const QString& link) {
    const QString prefix = QLatin1StringView(helpScheme) + u"://default/"_s;
    const qsizetype hash = link.indexOf(u'#');
    if (!link.startsWith(prefix, Qt::CaseInsensitive) || hash < prefix.size())
        return std::nullopt;
    const auto unescaped = [](const QString& part) {
        return QString::fromUtf8(QByteArray::fromPercentEncoding(part.toUtf8()));
    };
    const QString key = unescaped(link.sliced(prefix.size(), hash - prefix.size()));
    if (key.isEmpty())
        return std::nullopt;
    return DefaultLink{key, valueOf(unescaped(link.sliced(hash + 1)))};
}

QString helpManagerDescriptionOrValue(const QVariant& value) {
    if (!value.isValid())
        return links::localized("(No Value)");
    if (value.userType() == QMetaType::Bool)
        return value.toBool() ? links::localized("Yes") : links::localized("No");
    return value.toString();
}

DefaultChange followed(const DefaultLink& link, platform::UserDefaults& defaults) {
    DefaultChange change{link.key, defaults.objectForKey(link.key), link.value};
    if (change.didAnything())
        store(defaults, link.key, link.value);
    return change;
}

void DefaultChange::revert(platform::UserDefaults& defaults) const {
    store(defaults, key, before);
}

QString DefaultChange::message() const {
    return didAnything() ? links::localized("User default updated")
                         : links::localized("That didn't do anything");
}

QString DefaultChange::informativeText() const {
    return links::filledFormat(didAnything() ? links::localized("%@ is now set to %@.")
                                             : links::localized("%@ was already set to %@."),
                               {key, helpManagerDescriptionOrValue(after)});
}

QString DefaultChange::revertTitle() const {
    return links::filledFormat(links::localized("Revert to %@"),
                               {helpManagerDescriptionOrValue(before)});
}

}  // namespace help
