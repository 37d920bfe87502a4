#include "structured/xml_shorthand.h"

#include "platform/files/property_list.h"
#include "platform/text/regular_expression.h"

using namespace Qt::Literals::StringLiterals;

namespace structured {

namespace {

/// From the first tag behind `from` to the last `endTag`.
std::optional<QString> tagsBetween(const QString& text, qsizetype from, QLatin1StringView endTag) {
    const qsizetype start = text.indexOf(u'<', from);
    const qsizetype end = text.lastIndexOf(endTag);
    if (start < 0 || end < start) {
        return std::nullopt;
    }
    return text.mid(start, end - start);
}

/// Takes a tab from every line that begins with a tag. Lines within a string, whose tabs are its
/// own, cannot begin with one, but for the tag that ends it.
QString withoutOneLevel(const QString& text) {
    static const platform::RegularExpression indentation(
        uR"re(\n\t(?=\t*<(?!/(?:string|key)>)))re"_s);
    const platform::RegularExpression expression = indentation;
    return expression.replaceAll(text, u"\n"_s).value_or(text);
}

/// What surrounds the contents of a root dictionary, on one line so that no line number changes.
struct Envelope {
    QString before, after;
};

Envelope makeEnvelope() {
    QString empty = QString::fromUtf8(platform::writePropertyList(QVariantMap()));
    empty.remove(u'\n').remove(u'\r');
    const platform::RegularExpression root(
        uR"re(<\s*dict\s*>.*<\s*/\s*dict\s*>|<\s*dict\s*/\s*>)re"_s);
    const auto match = root.firstMatch(empty);
    if (!match) {
        return {};
    }
    const auto& range = *match->groups[0];
    return {empty.left(range.start) + "<dict>"_L1,
            "</dict>"_L1 + empty.mid(range.start + range.length)};
}

}  // namespace

std::optional<QString> contentsOfRootDictionary(const QString& propertyList) {
    const qsizetype root = propertyList.indexOf("<dict>"_L1);
    if (root < 0) {
        return std::nullopt;
    }
    auto contents = tagsBetween(propertyList, root + 1, "</dict>"_L1);
    return contents ? std::optional(withoutOneLevel(*contents)) : std::nullopt;
}

std::optional<QString> contentsOfPropertyList(const QString& propertyList) {
    const qsizetype element = propertyList.indexOf("<plist"_L1);
    if (element < 0) {
        return std::nullopt;
    }
    return tagsBetween(propertyList, element + 1, "</plist>"_L1);
}

std::optional<WrappedXml> wrappedXmlShorthand(const QString& shorthand) {
    static const platform::RegularExpression keyFirst(uR"re(^[^<]*<\s*key\s*>)re"_s);
    static const Envelope envelope = makeEnvelope();
    const platform::RegularExpression expression = keyFirst;
    if (!expression.firstMatch(shorthand) || !shorthand.isValidUtf16()) {
        return std::nullopt;
    }
    const QString whole = envelope.before + shorthand + envelope.after;
    return WrappedXml{whole.toUtf8(), envelope.before.size()};
}

}  // namespace structured
